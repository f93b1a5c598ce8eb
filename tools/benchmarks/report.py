"""Performance: figures become a table that a person can judge."""
import math
from dataclasses import dataclass
from pathlib import Path


@dataclass
class Line:
    """One figure, beside the floor or peer that it is held against."""
    work: str
    figure: float
    unit: str                  # "M" or "k" instructions, "ms", "MiB", "calls"
    against: str = ""
    other: float = 0
    goal: float = 0            # 0: none; with `against` the ratio, without it the figure itself
    note: str = ""

    def ratio(self):
        return self.figure / self.other if self.other else None

    def verdict(self):
        if not self.goal:
            return ""
        reached = self.ratio() if self.against else self.figure
        return "met" if reached <= self.goal else "**missed**"

    def row(self):
        goal = ""
        if self.goal:
            goal = f"≤ {self.goal:g} ×" if self.against else f"≤ {number(self.goal, self.unit)}"
        beside = f"{self.against}: {number(self.other, self.unit)}" if self.against else ""
        times = f"{self.ratio():.2f} ×" if self.against and self.other else ""
        return [self.work, number(self.figure, self.unit), beside, times, goal, self.verdict(),
                self.note]


def number(value, unit):
    if unit == "instructions":
        return f"{value / 1e6:.2f} M" if value >= 1e6 else f"{value / 1e3:.1f} k"
    return f"{value:.1f} {unit}" if isinstance(value, float) else f"{value} {unit}"


def table(lines):
    head = ["work", "figure", "beside", "ratio", "goal", "", "remark"]
    rows = [head, ["---"] * len(head)] + [line.row() for line in lines]
    return "\n".join("| " + " | ".join(row) + " |" for row in rows) + "\n"


def exponent(sizes, costs):
    """How the cost above that of the smallest size grows: 1 is linear. Least squares over the
    logarithms; nothing where it does not grow."""
    points = [(math.log(size - sizes[0]), math.log(cost - costs[0]))
              for size, cost in zip(sizes[1:], costs[1:]) if cost > costs[0]]
    if len(points) < 2:
        return None
    mean_x = sum(x for x, _ in points) / len(points)
    mean_y = sum(y for _, y in points) / len(points)
    return (sum((x - mean_x) * (y - mean_y) for x, y in points)
            / sum((x - mean_x) ** 2 for x, _ in points))


def curve(name, sizes, costs):
    found = exponent(sizes, costs)
    growth = (costs[-1] - costs[0]) / (sizes[-1] - sizes[0])
    cells = [name, "; ".join(f"{size}: {cost / 1e6:.2f} M" for size, cost in zip(sizes, costs)),
             f"{growth / 1e3:.1f} k", "none" if found is None else f"{found:.2f}",
             "met" if found is None or found <= 1.1 else "**missed**"]
    return "| " + " | ".join(cells) + " |"


CURVE_HEAD = ("| over the number of | instructions | each one more | exponent | linear at worst |\n"
              "| --- | --- | --- | --- | --- |")


def machine():
    """The processor, the system and the toolkit that the figures come from."""
    cpu = next((line.split(":", 1)[1].strip() for line in
                Path("/proc/cpuinfo").read_text("utf-8").splitlines()
                if line.startswith("model name")), "unknown")
    system = dict(line.split("=", 1) for line in
                  Path("/etc/os-release").read_text("utf-8").splitlines() if "=" in line)
    return cpu, system.get("PRETTY_NAME", "").strip('"')
