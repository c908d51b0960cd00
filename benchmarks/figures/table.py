"""The figures as a table that is read by people."""

from figures import compare

BEGIN, END = "<!-- figures: written by benchmarks/all -->\n", "<!-- end of figures -->\n"


def number(value):
    """Three digits, and no more zeros than are needed."""
    if value == 0:
        return "0"
    return f"{value:.0f}" if abs(value) >= 100 else f"{value:.3g}"


def line(row, figures, beside=""):
    """One row: ratios, or figures where there is no yardstick, and how far turns lie apart at most. What was not
    measured is a dash."""
    shown, spreads = [], []
    for name, _, _, _ in row.figures():
        measured = figures["rows"].get(name)
        summary = compare.figure_of(measured) if measured else None
        shown.append(number(summary["median"]) if summary else "–")
        spreads += [compare.spread(summary)] if summary and summary["turns"] > 1 else []
    after = " " + (row.unit if not row.beside else f"of {beside}" if beside else "")
    apart = f"{100 * max(spreads):.0f} %" if spreads else "–"
    bound = row.bound + (f"; aim {row.limit}" if row.limit else "")
    return f"| {row.name} | {(', '.join(shown) + after).rstrip()} | {apart} | {bound} |\n"


def only(several):
    """What all of them are, or nothing."""
    return several[0] if several and all(each == several[0] for each in several) else None


def markdown(rows, figures):
    machines = sorted({row["machine"] for row in figures["rows"].values()})
    text = f"Measured on: {'; '.join(machines)}.\n"
    for section in dict.fromkeys(row.section for row in rows):
        of_section = [row for row in rows if row.section == section]
        # What the figures of all rows are beside and of stands above them once.
        beside = only([row.beside for row in of_section])
        labels = only([list(row.cells) for row in of_section if len(row.cells) > 1])
        above = ([f"beside {beside}"] if beside else []) + ([", ".join(labels)] if labels else [])
        text += f"\n### {section}" + (": " + "; ".join(above) if above else "") + "\n\n"
        text += "| work | figure | spread | bound by |\n| --- | --- | --- | --- |\n"
        text += "".join(line(row, figures, "" if beside else row.beside) for row in of_section)
    return text


def put_into(document, text):
    """Replaces the table in a document, between its two marks."""
    with open(document) as file:
        whole = file.read()
    before, rest = whole.split(BEGIN)
    after = rest.split(END)[1]
    with open(document, "w") as file:
        file.write(before + BEGIN + text + END + after)
