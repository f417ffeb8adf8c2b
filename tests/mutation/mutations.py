"""Finds the small mistakes that can be seeded into a C++ source in this project's format."""

import re
from collections import namedtuple

Mutation = namedtuple("Mutation", "path offset old new kind where")

NO_CODE = re.compile(r'//[^\n]*|/\*.*?\*/|^[ \t]*#[^\n]*|R"\((?P<raw>.*?)\)"|"(?P<text>(?:\\.|[^"\\\n])*)"'
                     r"|(?<!\d)'(?:\\.|[^'\\])+'", re.MULTILINE | re.DOTALL)
PARENTHESES = r"[^()]*"
for _ in range(4):
    PARENTHESES = rf"(?:[^()]|\({PARENTHESES}\))*"
GUARD = rf"\b(?:if|while|for) \({PARENTHESES}\) "
NO_STATEMENT = (r"(?:if|for|while|do|else|switch|case|default|return|const|constexpr|auto|static|using|class|struct"
                r"|namespace|public|private|protected)\b"
                r"|(?:[\w:]+|[\w:]+<[^;]*>)[&*]* [&*]*(?:\w+|\[[\w, ]+\])\s*[;={(\[]")
TURNED = {"==": "!=", "!=": "==", "<": "<=", ">": ">=", "<=": "<", ">=": ">", "&&": "||", "||": "&&", "true": "false",
          "false": "true", "!": ""}
PLACES = [
    ("comparison", r"(?<= )(?P<old>[=!<>]=|<|>)(?=\s)"),
    ("connective", r"(?<= )(?P<old>&&|\|\|)(?=\s(?!\{))"),
    ("condition", r"(?P<old>!)(?=[\w(*])"),
    ("condition", rf"\b(?:if|while) \((?P<old>{PARENTHESES})\)"),
    ("constant", r"\b(?P<old>true|false)\b"),
    ("constant", r"(?<![\w.])(?P<old>\d[\w.']*)"),
    ("statement", GUARD + r"(?P<old>(?:[^;{}]|\{[^;{}]*\})+;)"),
    ("statement", rf"(?<=[;{{}}])(?=\s*\n\s+(?P<old>(?!{NO_STATEMENT})[\w*(+-][^;{{}}]*;))"),
]


def mutations(path, source, random):
    """All possible mistakes; the letter that changes in a text is drawn at random."""
    found = []
    for match in NO_CODE.finditer(source):
        kind = match.lastgroup
        letters = [] if kind is None else [at for at in range(*match.span(kind)) if source[at].isascii()
                                           and source[at].isprintable() and "\\" not in source[at - 1 : at + 1]]
        if letters:
            at = random.choice(letters)
            new = chr(ord(source[at]) ^ 1) if source[at].isalnum() else "x"
            found.append((at, source[at], new, "text"))
    code = NO_CODE.sub(lambda match: re.sub(r"[^\n]", " " if match.lastgroup is None else "_", match.group()), source)
    for kind, pattern in PLACES:
        for match in re.finditer(pattern, code, re.MULTILINE):
            old, offset = source[match.start("old") : match.end("old")], match.start("old")
            new = _mistaken(kind, old)
            if new is not None and code[match.start("old") : match.end("old")].count("(") == old.count(")"):
                found.append((offset, old, new, kind))
    return [Mutation(path, *one, _where(path, source, *one)) for one in found]


def _where(path, source, offset, old, new, kind):
    line, column = source.count("\n", 0, offset), offset - source.rfind("\n", 0, offset)
    return f"{path}:{line + 1}:{column}: {kind}: {old!r} -> {new!r} in: {source.splitlines()[line].strip()}"


def _mistaken(kind, old):
    if old in TURNED:
        return TURNED[old]
    if kind == "statement":
        return ";"
    if kind == "condition":
        return None if re.search(r";|\bconst\b|\bauto\b", old) else f"!({old})"
    number = re.fullmatch(r"(0[xX][\da-fA-F']+|[\d']+)((?:\.\d+)?[uUlLfF]*)", old)
    return number and str(int(number[1].replace("'", ""), 0) + 1) + number[2]
