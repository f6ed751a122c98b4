# Shows Doxygen a header as a reader of it sees it; line numbers stay.
# - A comment describes all declarations below it up to the next empty line: they become a member group.
# - An override without a comment is left out: it is described where it was declared first.
# - A constructor that takes no more than the viewer and a Qt parent needs no comment.

function emit(line)
{
    print closing line
    closing = ""
}

# Writes the declarations gathered so far.
function flush(    i, s, kept, shown)
{
    shown = 0
    for (s = 1; s <= statements; ++s) {
        kept[s] = !(text[s] ~ /[) ]override *(;|[{])/ && !(commented && s == 1))
        shown += kept[s]
    }
    s = 1
    for (i = 1; i <= count; ++i) {
        if (i == 1 && commented && shown > 1 && balance == 0)
            lines[i] = "/** @{ */ " lines[i]
        if (!commented && (text[of[i]] ~ /^ *(explicit )?[A-Za-z0-9_]+\((CAxEarthViewer\* viewer, )?Q(Object|Widget|GraphicsItem)\* parent( = nullptr)?\);/))
            lines[i] = "/** It belongs to its Qt parent, if it is given one. */ " lines[i]
        emit(of[i] == 0 || kept[of[i]] || of[i] > statements ? lines[i] : "")
    }
    if (commented && shown > 1 && balance == 0)
        closing = "/** @} */ "
    count = statements = balance = commented = open = 0
    split("", text)
    split("", of)
}

function gather(line, statement)
{
    lines[++count] = line
    of[count] = statement
}

/^ *\/\*\*/ { flush(); commented = 1; inside = 1 }
inside { gather($0, 0); if (/\*\//) inside = 0; next }
/^ *\/\/\// { if (statements || open || !commented) flush(); commented = 1; gather($0, 0); next }
/^ *\/\// { gather($0, 0); next }
!open && (/^ *$/ || /^#/ || /^ *(public|protected|private|signals)[ a-z]*:/ || /^ *Q_[A-Z_]+(\(.*\))?;?$/ || /^ *}/) { flush(); emit($0); next }
{
    if (!open)
        text[statements + 1] = ""
    gather($0, statements + 1)
    code = $0
    sub(/ *\/\/.*$/, "", code)
    text[statements + 1] = text[statements + 1] code
    balance += gsub(/[{]/, "{", code) - gsub(/[}]/, "}", code)
    open = !(balance == 0 && code ~ /[;}]$/)
    if (!open)
        ++statements
    # The head of a class or a namespace: what follows is not one statement with it.
    else if (text[statements + 1] ~ /^ *(class|struct|namespace|extern)[^;()]*[{] *$/) {
        balance = 1
        ++statements
        flush()
    }
}
END { flush() }
