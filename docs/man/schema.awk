# Makes the page of the JSON report, in scdoc's language, from its schema: a record becomes a section, each property
# with a description an entry. The schema has a property a line.
#
#   awk -f schema.awk report.schema.json >libquorvel_bin-report.5.scd

function described(line) {
    sub(/.*"description": "/, "", line)
    sub(/"[,}].*/, "", line)
    gsub(/\\"/, "\"", line)
    gsub(/[\\*_`+#]/, "\\\\&", line)
    return line
}
function named(line) {
    sub(/^ *"/, "", line)
    sub(/".*/, "", line)
    return line
}
function kind(line) {
    if (line ~ /"enum"/) return ""
    if (line ~ /"integer"/) return "number"
    if (line ~ /"boolean"/) return "truth"
    if (line ~ /"array"/) return "list"
    return "text"
}

BEGIN {
    print "libquorvel_bin-report(5)\n\n# NAME\n\nlibquorvel_bin-report - fields of the report of an appliance\n\n# DESCRIPTION\n"
    print "*libquorvel_bin report --json* prints one object with these fields. Sizes are in bytes, times in seconds of Unix"
    print "time. A list or field that could not be found out is null, and \"unknown\" of its record has the reason. Fields"
    print "may be added; those that are here stay.\n"
}
/^    "[a-z_]+": \{$/ { section = named($0); next }
/^      "description"/ { print "\n# " toupper(section) "\n\n" described($0) "\n"; next }
/"description"/ && /^ +"[a-z_]+": \{/ {
    print "*" named($0) "*" (kind($0) != "" ? " (" kind($0) ")" : "") "\n\t" described($0) "\n"
}
END { print "\n# SEE ALSO\n\n*libquorvel_bin*(1)" }
