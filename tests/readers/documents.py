"""Documents as `vornwout show --json` prints them."""


def objects_of(objects):
    """All objects, depth first."""
    for entry in objects:
        yield entry
        yield from objects_of(entry.get("objects", []))


def shown_cells(document):
    """What the cells of all visible tables show, in their order."""
    for entry in objects_of(document["objects"]):
        content = entry.get("content", {})
        if content.get("kind") == "table" and entry["visible"]:
            yield from (cell["text"] for cell in content["cells"] if "text" in cell)
