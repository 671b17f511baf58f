# Shows Doxygen a header whose comments are plain: /* above a declaration, or behind one on its line, becomes a
# documenting comment, and what would be a command or markup in it is text. Examples and tables keep their lines.
#
# A comment stands for all declarations up to the next empty line. Fields, types and constants without one have names
# that speak: they get an empty comment. A function without one is left so, for Doxygen to complain about.

# Doxygen takes what stands between double quotes as it is.
function escaped(text,    parts, number, i, result) {
    number = split(text, parts, "\"")
    for (i = 1; i <= number; ++i) {
        if (i % 2 == 1 || i == number) {
            gsub(/[\\@<>&#%$]/, "\\\\&", parts[i])
        }
        result = result (i > 1 ? "\"" : "") parts[i]
    }
    return result
}

# The lines of a comment without its marks, in lines[1..count].
function read_comment(line) {
    count = 0
    sub(/^ *\/\*/, "", line)
    while (line !~ /\*\//) {
        lines[++count] = line
        if ((getline line) <= 0) {
            break
        }
        sub(/^ *\*/, "", line)
        if (line ~ /^\/$/) {
            line = "*/"
        }
    }
    sub(/ *\*\/.*/, "", line)
    lines[++count] = line
    for (i = 1; i <= count; ++i) {
        sub(/^ /, "", lines[i])
        sub(/ +$/, "", lines[i])
    }
}

# An example, or a row of a table: indented outside a list, or with columns.
function keeps_its_line(line) {
    return line ~ /[^ ]  +[^ ]/ || (line ~ /^  / && !in_list)
}

function print_text(first,    is_kept, was_kept) {
    was_kept = in_list = 0
    for (i = first; i <= count; ++i) {
        in_list = lines[i] ~ /^ *- / || (in_list && lines[i] ~ /^  /)
        is_kept = keeps_its_line(lines[i]) || (was_kept && lines[i] ~ /^TVK_/)
        if (is_kept != was_kept) {
            print is_kept ? "@verbatim" : "@endverbatim"
            was_kept = is_kept
        }
        if (lines[i] ~ /^Returns /) {
            print ""
        }
        print is_kept ? lines[i] : escaped(lines[i])
    }
    if (was_kept) {
        print "@endverbatim"
    }
}

function close_section() {
    if (section_is_open) {
        print "/** @} */"
    }
    section_is_open = 0
}

# A line of dashes with a title begins a section; the text below it is about all that is in it.
function print_section(title) {
    close_section()
    sub(/^-+ /, "", title)
    sub(/ -+$/, "", title)
    print "/** @name " escaped(title)
    print_text(2)
    print "*/"
    print "/** @{ */"
    section_is_open = 1
}

function print_comment() {
    print "/**"
    if (!file_is_told) {
        print "@file"
    }
    file_is_told = 1
    print_text(1)
    print "*/"
}

function is_function(line) {
    return line ~ /\(/ && line !~ /^(#|typedef)/
}

# In front of a declaration that no comment stands directly above.
function print_shared_comment(line) {
    if (is_shared && level == 0) {
        print_comment()
    } else if (!is_function(line) && line ~ /^ *(#define|struct|union|enum|typedef|[a-z_].*;)/) {
        print "/** &nbsp; */"
    }
}

# Comments reach as far as a declaration does: a statement with its braces, or a macro.
function follow(code) {
    level += gsub(/[{]/, "{", code) - gsub(/[}]/, "}", code)
    is_inside = code ~ /\\$/ || (code ~ /[^;{}]$/ && code !~ /^#/)
}

/^ *\/\*/ {
    read_comment($0)
    is_shared = 0
    if (lines[1] ~ /^---- /) {
        print_section(lines[1])
    } else {
        print_comment()
        is_fresh = 1
    }
    next
}

/\/\*.*\*\/ *$/ {
    code = $0
    sub(/ *\/\*.*/, "", code)
    sub(/^.*\/\* */, "")
    sub(/ *\*\/ *$/, "")
    print code " /**< " escaped($0) " */"
    follow(code)
    next
}

/^$/ {
    is_fresh = is_shared = is_inside = 0
}

# The end of what is declared for C.
/^#ifdef __cplusplus/ {
    close_section()
}

/^(extern "C" {|}|#(if|el|en|un|in).*|__attribute__.*)?$/ {
    if (/^}/ && level > 0) {
        --level
    }
    print
    next
}

{
    if (is_fresh) {
        is_shared = level == 0
        is_fresh = 0
    } else if (!is_inside) {
        print_shared_comment($0)
    }
    follow($0)
    print
}
