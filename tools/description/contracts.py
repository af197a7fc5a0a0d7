"""What callers must meet beyond sizes, and what bindings may decide for them, as boundary/by_hand.toml states it."""


class ContractError(Exception):
    """A statement names something that does not exist."""


def add(functions, by_hand):
    """Adds the statements to the functions and arguments that they name."""
    named = {f["plain_name"]: f for f in functions}
    arguments = {f"{name}.{a['name']}": a for name, f in named.items() for a in f["arguments"]}

    def described(table, name):
        if name not in table:
            raise ContractError(f"by_hand.toml: there is no {name}")
        return table[name]

    for name in by_hand["regions_inside"]["functions"]:
        described(named, name)["regions_inside"] = True
    for name, (capacity, *lists) in by_hand["lists"].items():
        function = described(named, name)
        for argument in filter(None, [capacity, *lists]):
            described(arguments, f"{name}.{argument}")
        function["lists"] = {"capacity": capacity, "outputs": lists}
    for name, (least, most, demand) in by_hand["ranges"].items():
        described(arguments, name)["range"] = {"least": least, "most": most, "demand": demand}
    for role, names in by_hand["roles"].items():
        for name in names:
            described(arguments, name)["role"] = role
    for name, count in by_hand["tails"].items():
        described(arguments, name)["tail"] = count
