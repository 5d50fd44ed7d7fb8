#include "core/operations/UndoStep.h"

#include "core/base/Overloaded.h"

namespace fennik {

UndoStepList::UndoStepList(std::initializer_list<UndoStep> steps) {
    for (const auto& step : steps)
        push_back(step);
}

UndoStepList::UndoStepList(const std::vector<UndoStep>& steps) {
    for (const auto& step : steps)
        push_back(step);
}

void UndoStepList::push_back(const UndoStep& step) {
    std::visit(Overloaded{
                   [this](const UndoSteps::Moved& moved) {
                       kinds_.push_back(Kind::moved);
                       urls_.push_back(moved.from);
                       places_.push_back(moved.to);
                   },
                   [this](const UndoSteps::Created& created) {
                       kinds_.push_back(Kind::created);
                       urls_.push_back(created.url);
                   },
                   [this](const UndoSteps::Trashed& trashed) {
                       kinds_.push_back(Kind::trashed);
                       urls_.push_back(trashed.original);
                       places_.push_back(trashed.inTrash);
                   },
                   [this](const UndoSteps::RemovedEmptyDirectory& removed) {
                       kinds_.push_back(Kind::removedEmptyDirectory);
                       urls_.push_back(removed.url);
                   },
               },
               step);
}

void UndoStepList::pop_back() {
    if (kinds_.back() == Kind::moved || kinds_.back() == Kind::trashed)
        places_.pop_back();
    urls_.pop_back();
    kinds_.pop_back();
}

std::vector<UndoStep> UndoStepList::all() const {
    std::vector<UndoStep> steps;
    steps.reserve(size());
    std::size_t place = 0;
    for (std::size_t i = 0; i < size(); ++i) {
        switch (kinds_[i]) {
        case Kind::moved:
            steps.emplace_back(UndoSteps::Moved{.from = urls_[i], .to = places_[place++]});
            break;
        case Kind::created:
            steps.emplace_back(UndoSteps::Created{urls_[i]});
            break;
        case Kind::trashed:
            steps.emplace_back(
                UndoSteps::Trashed{.original = urls_[i], .inTrash = places_[place++]});
            break;
        case Kind::removedEmptyDirectory:
            steps.emplace_back(UndoSteps::RemovedEmptyDirectory{urls_[i]});
            break;
        }
    }
    return steps;
}

void UndoStepList::shrink_to_fit() {
    kinds_.shrink_to_fit();
    urls_.shrink_to_fit();
    places_.shrink_to_fit();
}

} // namespace fennik
