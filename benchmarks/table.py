"""The figures as one readable table."""

HEADINGS = ["what", "Fennik", "compared with", "", "ratio", "target", ""]
RIGHT_ALIGNED = {1, 3, 4}


class AtMost:
    """A ratio Fennik : other that must not be exceeded."""

    def __init__(self, limit):
        self.limit = limit

    def ratio(self, fennik, other):
        return fennik / other

    def holds(self, ratio):
        return ratio <= self.limit

    def __str__(self):
        return f"≤ {self.limit:g}"


class AtLeast(AtMost):
    """A ratio other : Fennik that must be reached."""

    def ratio(self, fennik, other):
        return other / fennik

    def holds(self, ratio):
        return ratio >= self.limit

    def __str__(self):
        return f"≥ {self.limit:g}"


def milliseconds(value):
    return f"{value:.1f} ms" if value < 100 else f"{value:.0f} ms"


def mebibytes(value):
    return f"{value:.1f} MiB"


def count(value):
    return f"{value:,.0f}"


class Table:
    def __init__(self):
        self.rows = []
        self.missed = 0

    def section(self, title):
        self.rows.append([title])

    def add(self, what, fennik, other_name, other, target=None, text=milliseconds):
        """One comparison; without a target it only informs."""
        rule = target or AtMost(0)
        ratio = rule.ratio(fennik, other)
        verdict = ""
        if target:
            verdict = "ok" if target.holds(ratio) else "OVER"
            self.missed += verdict == "OVER"
        self.rows.append([what, text(fennik), other_name, text(other), f"{ratio:.2f}",
                          str(target or ""), verdict])

    def note(self, what, remark):
        self.rows.append([what, "", remark, "", "", "", ""])

    def __str__(self):
        cells = [HEADINGS] + [row for row in self.rows if len(row) > 1]
        widths = [max(len(row[column]) for row in cells) for column in range(len(HEADINGS))]

        def line(row):
            return "  ".join(cell.rjust(width) if column in RIGHT_ALIGNED else cell.ljust(width)
                             for column, (cell, width) in enumerate(zip(row, widths))).rstrip()

        lines = [line(HEADINGS), "-" * (sum(widths) + 2 * len(widths) - 2)]
        lines += [line(row) if len(row) > 1 else f"\n{row[0]}" for row in self.rows]
        return "\n".join(lines)
