"""Tables of figures: how they are put together from turns, and what got slower between two of them."""

import statistics

# Fewer turns do not tell how large the noise is.
FEWEST_TURNS = 3
# What is not seen as a change, however quiet the machine was.
LEAST_CHANGE = 0.03


def summary(turns):
    """Of the figures of all turns: less is better."""
    return {"median": statistics.median(turns), "least": min(turns), "most": max(turns), "turns": len(turns)}


def spread(figure):
    """How far a row's turns lie apart, as a part of their median."""
    return (figure["most"] - figure["least"]) / abs(figure["median"]) if figure["median"] else 0.0


def figure_of(row):
    return row["ratio"] if "ratio" in row else row["value"]


def usual_spread(figures):
    """That of the row in the middle. A few turns may lie together by chance; no row is taken to be that quiet."""
    spreads = [spread(figure_of(row)) for row in figures["rows"].values()]
    return statistics.median(spreads) if spreads else 0.0


def is_slower(before, now, usual):
    """Whether a figure has grown by more than its turns lie apart, then and now together."""
    noise = max(spread(before), usual) * abs(before["median"]) + max(spread(now), usual) * abs(now["median"])
    grown = now["median"] - before["median"]
    return grown > noise and grown > LEAST_CHANGE * abs(before["median"])


def compare(before, now, measured=None):
    """(what, row, text) for each row that got slower, is missing, is new or cannot be told. `before` and `now`
    are tables as `all` writes them; `measured` says whether a row was to be measured this time."""
    differences = []
    usual = max(usual_spread(before), usual_spread(now))
    for name, old in sorted(before["rows"].items()):
        new = now["rows"].get(name)
        if new is None:
            if measured is None or measured(name):
                differences.append(("missing", name, "was measured before and is not now"))
            continue
        figure = "ratio" if "ratio" in old and "ratio" in new else "value"
        if figure == "value" and old["machine"] != new["machine"]:
            differences.append(("untold", name, "has no yardstick, and the machine is another one"))
        elif min(old[figure]["turns"], new[figure]["turns"]) < FEWEST_TURNS:
            differences.append(("untold", name, f"fewer than {FEWEST_TURNS} turns do not tell its noise"))
        elif is_slower(old[figure], new[figure], usual):
            was, became = old[figure], new[figure]
            differences.append(("slower", name, f"{figure} {was['median']:.3g} ({was['least']:.3g} to "
                                f"{was['most']:.3g}) became {became['median']:.3g} ({became['least']:.3g} to "
                                f"{became['most']:.3g})"))
    differences += [("new", name, "was not measured before") for name in sorted(set(now["rows"]) - set(before["rows"]))]
    return differences
