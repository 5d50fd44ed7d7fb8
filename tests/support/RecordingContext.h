#pragma once

#include "core/operations/OperationContext.h"

#include <cstdint>
#include <expected>
#include <functional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace fennik::test {

/// A job that writes down what it is told, and answers as the test says.
class RecordingContext final : public OperationContext {
public:
    RecordingContext(TransferKind kind, const TrashProvider& trash) : kind_(kind), trash_(trash) {}

    TransferKind kind() const override { return kind_; }
    ConflictChoice answer(const Conflict& conflict) override {
        conflicts.push_back(conflict);
        onAsk(conflict);
        return choice;
    }
    void whileAsking(const std::function<void()>& ask) override { ask(); }
    Checkpoint checkpoint() override {
        onCheckpoint();
        return cancelled ? Checkpoint::stop : Checkpoint::goOn;
    }
    bool isCancelled() const override { return cancelled; }
    void cancelNow() override { cancelled = true; }
    void setTotals(std::int64_t bytes, std::int64_t files) override {
        totalBytes = bytes;
        totalFiles = files;
    }
    void setCurrentName(std::string_view name) override {
        currentName = name;
        onName(currentName);
    }
    void bytesWritten(std::int64_t count) override {
        doneBytes += count;
        onBytes(count);
    }
    void bytesAccounted(std::int64_t count) override { doneBytes += count; }
    void filesDone(std::int64_t count) override { doneFiles += count; }
    void itemsSkipped(std::int64_t count) override { skipped += count; }
    void addError(std::string sentence) override { errors.push_back(std::move(sentence)); }
    void fail(std::string sentence) override {
        failure = sentence;
        addError(std::move(sentence));
    }
    void addStep(UndoStep step) override { steps.push_back(std::move(step)); }
    void dropLastStep() override { steps.pop_back(); }
    bool isCapped() const override { return false; }
    const TrashProvider& trash() const override { return trash_; }

    ConflictChoice choice = ConflictChoice::cancel;
    std::function<void(const Conflict&)> onAsk = [](const Conflict&) {};
    std::function<void()> onCheckpoint = [] {};
    std::function<void(const std::string&)> onName = [](const std::string&) {};
    std::function<void(std::int64_t)> onBytes = [](std::int64_t) {};

    bool cancelled = false;
    std::vector<Conflict> conflicts = {};
    std::vector<std::string> errors = {};
    std::string failure = {};
    std::vector<UndoStep> steps = {};
    std::string currentName = {};
    std::int64_t totalBytes = 0;
    std::int64_t doneBytes = 0;
    std::int64_t totalFiles = 0;
    std::int64_t doneFiles = 0;
    std::int64_t skipped = 0;

private:
    TransferKind kind_;
    const TrashProvider& trash_;
};

} // namespace fennik::test
