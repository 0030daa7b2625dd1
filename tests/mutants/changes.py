"""The changes that could be made to a source: which text at which place becomes which other text."""

import re
from dataclasses import dataclass


@dataclass(frozen=True)
class Change:
    path: str
    line: int  # from 1
    start: int  # in the file, in characters
    old: str
    new: str
    kind: str

    def applied_to(self, text):
        assert text[self.start : self.start + len(self.old)] == self.old
        return text[: self.start] + self.new + text[self.start + len(self.old) :]

    def __str__(self):
        old = " ".join(self.old.split())
        new = " ".join(self.new.split())
        return f"{self.path}:{self.line}: {self.kind}: {old!r} -> {new!r}"


# What stands in comments, literals, the preprocessor's lines and static_assert is not a program's behaviour.
_NO_CODE = re.compile(
    r"""//[^\n]* | /\*.*?\*/ | ^[ \t]*\#(?:[^\n\\]|\\.)* | R"\((?:.|\n)*?\)"
      | "(?:[^"\\\n]|\\.)*" | '(?:[^'\\\n]|\\.)*' | \[\[[^\]]*\]\]
      | \bstatic_assert\([^;]*;""",
    re.VERBOSE | re.MULTILINE | re.DOTALL,
)

_COMPARISONS = {"==": "!=", "!=": "==", "<=": "<", ">=": ">", "<": "<=", ">": ">="}
_OPERATORS = {"&&": "||", "||": "&&", "+": "-", "-": "+", "+=": "-=", "-=": "+=", "++": "--", "--": "++"}

# With blanks around them, as the formatter sets binary operators; a template's brackets have none.
_BINARY = re.compile(r"(?<= )(==|!=|<=|>=|<|>|&&|\|\||\+=|-=|\+|-)(?= )")
_STEP = re.compile(r"(?<=[\w\s(])(\+\+|--)(?=\w)")
_NUMBER = re.compile(r"(?<![\w.'])(\d+)(?![\w.'])")
_TRUTH = re.compile(r"\b(true|false)\b")
_NOT = re.compile(r"(?<=[( ])!(?=[\w(])")
_CONDITION = re.compile(r"\b(if|while) \((?!const |auto |int )")
_CALL = re.compile(r"(?<=[;{}\n])[ \t]*(?:[\w:]+(?:\.|->|::))*\w+\((?:[^;{}])*?\);(?=\n)")


def _for_this_system(text):
    """`text` with blanks for the parts that only Windows compiles."""
    lines = []
    compiled = []  # of each #if that is open: whether the part in which we are is compiled here
    for line in text.splitlines(keepends=True):
        directive = line.split()
        if line.startswith("#if"):
            compiled.append(directive != ["#ifdef", "Q_OS_WIN"])
        elif directive == ["#else"]:
            compiled[-1] = not compiled[-1]
        elif directive[:1] == ["#endif"]:
            compiled.pop()
        lines.append(line if all(compiled) else re.sub(r"[^\n]", " ", line))
    return "".join(lines)


def _blanked(text):
    """`text` with blanks for all that is no code, so that places stay where they are."""
    return _NO_CODE.sub(lambda found: re.sub(r"[^\n]", " ", found.group()), text)


def _closing(code, start):
    """Where the bracket that opens at `start` is closed; 0 where it is not."""
    depth = 0
    for place in range(start, len(code)):
        depth += {"(": 1, ")": -1}.get(code[place], 0)
        if depth == 0:
            return place
    return 0


def changes_in(path, text):
    """All that could be changed, in the order of the text."""
    code = _blanked(_for_this_system(text))
    found = []

    def add(start, old, new, kind):
        found.append(Change(path, text.count("\n", 0, start) + 1, start, old, new, kind))

    for match in _BINARY.finditer(code):
        sign = match.group()
        if sign in _COMPARISONS:
            add(match.start(), sign, _COMPARISONS[sign], "comparison")
        else:
            add(match.start(), sign, _OPERATORS[sign], "operator")
    for match in _STEP.finditer(code):
        add(match.start(), match.group(), _OPERATORS[match.group()], "operator")
    for match in _NUMBER.finditer(code):
        add(match.start(), match.group(), str(int(match.group()) + 1), "constant")
    for match in _TRUTH.finditer(code):
        add(match.start(), match.group(), "false" if match.group() == "true" else "true", "constant")
    for match in _NOT.finditer(code):
        add(match.start(), "!", "", "condition")
    for match in _CONDITION.finditer(code):
        end = _closing(code, match.end() - 1)
        if end > 0:
            add(match.start(), text[match.start() : end + 1],
                f"{match.group()}false && ({text[match.end() : end]}))", "condition")
    for match in _CALL.finditer(code):
        words = match.group().split("(")[0].split()
        if words and words[0] not in ("return", "connect", "Q_UNUSED") and "static_assert" not in words[0]:
            start = match.start() + len(match.group()) - len(match.group().lstrip())
            add(start, text[start : match.end()], ";", "deleted call")
    return sorted(found, key=lambda change: (change.start, change.kind))
