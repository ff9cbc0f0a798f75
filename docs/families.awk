# Filters a header for Doxygen. In the headers one comment stands for the run of members below it, up to a blank line
# or the next comment; here each run becomes a member group, so that every member gets the comment. Lines stay as many.
{
    isComment = /^    \/\/\/ /
    opens = isComment && !inComment
    marks = ""
    if (inRun && (opens || /^ *$/ || /^[a-z}]/)) {
        marks = "/** @} */"
        inRun = 0
    }
    if (opens) {
        marks = marks "/** @{ */"
        inRun = 1
    }
    inComment = isComment
    print marks $0
}
