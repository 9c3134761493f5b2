"""Finds the sites of a C++ source where one small change, a mutation, makes a wrong program.

Reads the text as clang-format leaves it; it is no parser. The caller discards mutations that do not
compile.
"""

import re
from dataclasses import dataclass

GROUPS = ("operator", "constant", "dropped", "order")

SWAPS = {
    "==": "!=", "!=": "==", "<": "<=", "<=": "<", ">": ">=", ">=": ">", "&&": "||", "||": "&&",
    "+": "-", "-": "+", "*": "/", "/": "*", "+=": "-=", "-=": "+=",
}  # fmt: skip
OPERATOR = re.compile(r"(?<= )(==|!=|<=|>=|&&|\|\||\+=|-=|[<>+*/-])(?= |$)", re.M)
NUMBER = re.compile(r"(?<![\w.'])(0x[0-9a-fA-F]+|\d[\d']*(?:\.\d+)?)(?![\w.'])")
TRUTH = re.compile(r"\b(true|false)\b")
CONDITION = re.compile(r"\b(?:if|while) (\()")
LITERAL = re.compile(r'"(?:[^"\\\n]|\\.)*"|\'(?:[^\'\\\n]|\\.)+\'')
ENUM = re.compile(r"\benum (?:class )?(\w+)[^{;]*\{([^}]*)\}")
# An expression that stands for itself; two words before the first sign would be a declaration.
STATEMENT = re.compile(
    r"Q_EMIT\b|delete |(?:\+\+|--)\w|[A-Za-z_][\w:]*(?:\(|->|\.|\[|\{| [-+]?= | << )"
)
JUMP = re.compile(r"(?:break|continue|return);")
NOT_PROGRAM = re.compile(r"Q_ASSERT|static_assert")


@dataclass(frozen=True)
class Site:
    """The mutation replaces text[start:end] by `after` and keeps the number of lines."""

    start: int
    end: int
    after: str
    group: str


def masked(text):
    """The text without comments and preprocessor lines, and with strings emptied; same offsets."""

    def blank(match):
        found = match[0]
        if found[0] in "\"'":
            return found[0] + "_" * (len(found) - 2) + found[0]
        return re.sub(r"[^\n]", " ", found)

    signs = LITERAL.pattern + r"|//[^\n]*|/\*.*?\*/|^[ \t]*#(?:[^\n\\]|\\.)*"
    # A digit separator is no quotation mark.
    text = re.sub(r"(?<=\d)'(?=\d)", "_", text)
    return re.sub(signs, blank, text, flags=re.M | re.S)


def enumerations(texts):
    """The next of its kind for each enumerator of these texts, by enumeration and name."""
    following = {}
    for text in texts:
        for match in ENUM.finditer(masked(text)):
            names = re.findall(r"(\w+)(?: = [^,]+)?", match[2])
            for i, name in enumerate(names):
                following[match[1], name] = names[(i + 1) % len(names)]
    return following


def other_enumerator(following, qualifier, name):
    """None if there is none, or if several enumerations have the name and none of them is named."""
    if (qualifier, name) in following:
        return following[qualifier, name]
    others = {after for (_, each), after in following.items() if each == name}
    return others.pop() if len(others) == 1 else None


def other_number(number):
    if number.startswith("0x"):
        return hex(int(number, 16) + 1)
    if "." in number:
        return str(round(float(number) * 1.25, 6) or 0.5)
    value = int(number.replace("'", ""))
    return "191" if value == 255 else str(value + 1)


def other_literals(literal):
    """A style rule gets another colour or figure, other texts lose a character."""
    quote, inner = literal[0], literal[1:-1]
    if quote == "'":
        return ["'_'" if inner != "_" else "'-'"]
    if not inner:
        return ['"_"']
    others = []
    colour = re.search(r"#[0-9A-F]{6}\b", inner)
    if colour:
        digit = "4" if inner[colour.start() + 1] != "4" else "C"
        others.append(inner[: colour.start() + 1] + digit + inner[colour.start() + 2 :])
    figures = list(re.finditer(r"(?<![\w#.%])\d+(?![\d.%])", inner))
    if figures and len(inner) > len(figures[-1][0]):
        figure = figures[-1]
        value = int(figure[0])
        more = "191" if value == 255 else str(value + max(1, value // 4))
        others.append(inner[: figure.start()] + more + inner[figure.end() :])
    if not others:
        others.append(re.sub(r"(?:\\.|[^\\])$", "", inner))
    return [quote + other + quote for other in others]


def closing(code, opening):
    """Where the parenthesis at `opening` is closed."""
    depth = 0
    for i in range(opening, len(code)):
        depth += {"(": 1, ")": -1}.get(code[i], 0)
        if depth == 0:
            return i
    return len(code)


def statement_end(code, start):
    """Behind the semicolon that ends what begins at `start`; None if it is no simple statement."""
    depth = 0
    for i in range(start, len(code)):
        sign = code[i]
        if sign == "{" and depth == 0 and code[i - 1].isspace():
            return None
        depth += {"(": 1, "{": 1, "[": 1, ")": -1, "}": -1, "]": -1}.get(sign, 0)
        if depth < 0:
            return None
        if sign == ";" and depth == 0:
            return i + 1
    return None


def statements(code):
    """Start and end of each expression statement and jump."""
    found = []
    for match in re.finditer(r"^( +)(?=[\w+-])", code, re.M):
        start = match.end()
        before = code[: match.start()].rstrip()
        if before[-1:] not in (";", "{", "}", ":"):
            continue
        if not (STATEMENT.match(code, start) or JUMP.match(code, start)):
            continue
        end = statement_end(code, start)
        if end is not None:
            found.append((start, end))
    return found


PARTS = re.compile(r"(?:Q_EMIT )?(?:(\w+)(?:->|\.))?(?:.*?(?:->|\.))?([\w:]*)")
SETTER = re.compile(r"set[A-Z]|connect$|clear|mark|release")


def order_matters(first, second):
    """False for two that have nothing to do with each other or only set different things."""
    if JUMP.match(first) or JUMP.match(second):
        return False
    for one, other in ((first, second), (second, first)):
        assigned = re.match(r"([\w.>\[\]-]+) [-+]?= ", one)
        if assigned:
            return re.search(rf"(?<![\w.>]){re.escape(assigned[1])}(?!\w)", other) is not None
    (receiver, called), (other_receiver, other_called) = (
        PARTS.match(each[: each.find("(")]).groups() for each in (first, second)
    )
    setting = [SETTER.match(each) is not None for each in (called, other_called)]
    if all(setting):
        return False
    if receiver == other_receiver and receiver is not None:
        return receiver in ("painter", "inner", "cursor") or not any(setting)
    if receiver is None and other_receiver is None:
        return called == other_called or first.endswith("();") or second.endswith("();")
    name = receiver or other_receiver
    return re.search(rf"\b{name}\b", second if receiver else first) is not None and not any(setting)


def dropped(text, start, end):
    """Nothing, in as many lines, so that those below keep their numbers."""
    return ";" + "\n" * text.count("\n", start, end)


def sites(text, following, is_header):
    code = masked(text)
    found = []

    def add(start, end, after, group):
        line_start = code.rfind("\n", 0, start) + 1
        if text[start:end] != after and not NOT_PROGRAM.search(code, line_start, end):
            found.append(Site(start, end, after, group))

    for match in OPERATOR.finditer(code):
        add(match.start(), match.end(), SWAPS[match[0]], "operator")
    for match in CONDITION.finditer(code):
        start, end = match.start(1), closing(code, match.start(1))
        if ";" not in code[start:end]:
            add(start, end, "(!(" + text[start + 1 : end] + ")", "operator")

    for match in NUMBER.finditer(code):
        add(match.start(), match.end(), other_number(text[match.start() : match.end()]), "constant")
    for match in TRUTH.finditer(code):
        add(match.start(), match.end(), "false" if match[0] == "true" else "true", "constant")
    for match in LITERAL.finditer(code):
        for other in other_literals(text[match.start() : match.end()]):
            add(match.start(), match.end(), other, "constant")
    inside_enum = [match.span() for match in ENUM.finditer(code)]
    for match in re.finditer(r"(?:\b(\w+)::)?\b([A-Z]\w+)\b(?!::)", code):
        line = code[code.rfind("\n", 0, match.start()) + 1 : match.start()]
        other = other_enumerator(following, match[1], match[2])
        if (
            other is not None
            and not line.lstrip().startswith(("case ", "class ", "using ", "enum "))
            and not any(start <= match.start() < end for start, end in inside_enum)
        ):
            add(match.start(2), match.end(2), other, "constant")

    if not is_header:
        lines = statements(code)
        for start, end in lines:
            add(start, end, dropped(text, start, end), "dropped")
        for match in re.finditer(r"^ +case [\w:]+:\n(?= +(?:case|default))", code, re.M):
            add(match.start(), match.end(), "\n", "dropped")
        for (start, middle), (second, end) in zip(lines, lines[1:]):
            gap = text[middle:second]
            if (
                gap.count("\n") == 1
                and not gap.strip()
                and order_matters(code[start:middle], code[second:end])
            ):
                add(start, end, text[second:end] + gap + text[start:middle], "order")
    return sorted(set(found), key=lambda site: (site.start, site.end, site.after))
