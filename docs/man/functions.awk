# Makes a manual page of section 3, in scdoc's language, from a public header: the file's comment
# becomes the description, each documentation comment with the declarations below it an entry, each
# section comment ("/* ---- Title ---- */") a section.
#
#   awk -v page=quorvel_disk -f functions.awk disk.h >quorvel_disk.3.scd

# Text that scdoc shall not read as markup.
function escaped(text) {
    gsub(/[\\*_`+]/, "\\\\&", text)
    sub(/^[#.;|\[\]0-9-]/, "\\\\&", text)
    return text
}

# A backslash escapes in a block that is laid out by hand, too.
function laid_out(text) {
    gsub(/\\/, "&&", text)
    return text
}

function end_literal() {
    if (in_literal) print indent "```\n"
    in_literal = 0
}

# Items of a list follow each other without a line between them.
function end_paragraph(next_is_item) {
    if (paragraph != "") print indent paragraph (in_list && next_is_item ? "" : "\n")
    paragraph = ""
    in_list = next_is_item
}

function add(text) {
    paragraph = paragraph == "" ? text : paragraph " " text
}

# One line of a comment, without its star: words of a paragraph, a tag, or something laid out by hand.
function comment_line(text,    name) {
    if (text ~ /^  / && !in_tag && !in_list) {
        end_paragraph()
        if (!in_literal) print indent "```"
        in_literal = 1
        print indent laid_out(substr(text, 3))
        return
    }
    end_literal()
    sub(/^ +/, "", text)
    sub(/ +$/, "", text)
    if (text == "" || text ~ /^@/) {
        end_paragraph()
        in_tag = text != ""
    } else if (text ~ /^- /) {
        end_paragraph(1)
        paragraph = "-"
        sub(/^- /, "", text)
    }
    if (text ~ /^@param /) {
        sub(/^@param +/, "", text)
        name = text
        sub(/ .*/, "", name)
        sub(/^[^ ]+ +/, "", text)
        add("_" name "_: " escaped(text))
    } else if (match(text, /@return +/)) {
        if (RSTART > 1) add(escaped(substr(text, 1, RSTART - 1)))
        sub(/ +$/, "", paragraph)
        add("Returns " escaped(substr(text, RSTART + RLENGTH)))
    } else if (text != "") {
        add(escaped(text))
    }
}

# The whole text of a comment, lines joined with line feeds, opening and closing removed.
function print_comment(text,    lines, count, i) {
    in_tag = 0
    count = split(text, lines, "\n")
    for (i = 1; i <= count; i++) comment_line(lines[i])
    end_literal()
    end_paragraph()
}

# What a page is about: the first sentence of the file's comment.
function first_sentence(text) {
    gsub(/\n/, " ", text)
    sub(/\. .*|\.$/, "", text)
    sub(/^[A-Z][A-Za-z -]*: /, "", text)
    return text
}

function print_head(text) {
    print page "(3) \"\" \"libquorvel_bin\"\n"
    print "# NAME\n\n" page " - " escaped(first_sentence(text)) "\n"
    print "# SYNOPSIS\n\n*#include <quorvel/" file ">*++\n*cc* _PROGRAM_.c *$(pkg-config --cflags --libs libquorvel\\_bin)*\n"
    print "# DESCRIPTION\n"
    print_comment(text)
}

function print_section(text,    title, about, rest) {
    title = text
    sub(/\n.*/, "", title)
    rest = substr(text, length(title) + 2)
    gsub(/^[ -]+|[ -]+$/, "", title)
    # Behind a colon stands what the section is about.
    about = title
    sub(/: .*/, "", title)
    print "# " toupper(escaped(title)) "\n"
    if (sub(/^.*: /, "", about)) print escaped(toupper(substr(about, 1, 1)) substr(about, 2)) ".\n"
    sub(/^[ -]*-[ -]*/, "", rest)
    sub(/^\n+/, "", rest)
    if (rest ~ /[a-z]/) print_comment(rest)
    declarations_due = ""
}

# A documentation comment waits for the declarations below it, which are shown first.
function print_entry(    lines, count, i) {
    if (declarations == "") return
    print "```"
    printf "%s", declarations
    print "```\n"
    indent = "\t"
    if (comment != "") print_comment(comment)
    indent = ""
    declarations = comment = ""
}

function take_comment(text) {
    if (!head_done) {
        sub(/^\* *@file *\n? */, "", text)
        print_head(text)
        head_done = 1
    } else if (text ~ /^\*/) {
        print_entry()
        sub(/^\* ?/, "", text)
        comment = text
    } else if (text ~ /^ *----/) {
        print_entry()
        print_section(text)
    }
}

BEGIN {
    file = page
    sub(/^quorvel_/, "", file)
    file = file ".h"
}

# Comments that stand at the margin; those inside a structure belong to its text.
/^\/\*/ { in_comment = 1; collected = "" }
in_comment {
    line = $0
    sub(/^\/\*/, "", line)
    sub(/^ \*( |$)/, "", line)
    last = sub(/ *\*\/$/, "", line)
    sub(/^ \*$/, "", line)
    collected = collected == "" ? line : collected "\n" line
    if (last) {
        in_comment = 0
        take_comment(collected)
    }
    next
}
/^QUORVEL_BEGIN_DECLS/ { in_interface = 1; next }
/^QUORVEL_END_DECLS/ { in_interface = 0 }
/^$/ && !in_body { print_entry(); next }
in_interface {
    if (/^(struct|enum)[^;]*{$/) in_body = 1
    if (/^}/) in_body = 0
    line = $0
    gsub(/QUORVEL_API /, "", line)
    sub(/\/\*\*< /, "/* ", line)
    declarations = declarations laid_out(line) "\n"
}
END { print_entry(); print "# SEE ALSO\n\n*libquorvel_bin*(1), *libquorvel_bin*(3)" }
