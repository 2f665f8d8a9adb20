# Turns CHANGELOG.md into a Debian changelog. What is "Unreleased" goes under the version that is
# being built; "## 0.2.0 - 2027-01-31" starts a version that came out on that day.
# Variables: version and date (YYYY-MM-DD) of what is being built, revision, maintainer.

function flush_item(    word, words, count, line) {
  count = split(item, words, " ")
  line = "  *"
  for (word = 1; word <= count; word++) {
    if (length(line) + 1 + length(words[word]) > 78) {
      print line
      line = "   "
    }
    line = line " " words[word]
  }
  if (count > 0)
    print line
  item = ""
}

function end_entry(    command, stamp) {
  flush_item()
  if (day == "")
    return
  command = "LC_ALL=C date -u -R -d " day
  command | getline stamp
  close(command)
  printf "\n -- %s  %s\n\n", maintainer, stamp
}

/^## / {
  end_entry()
  number = $2 == "Unreleased" ? version : $2
  day = $2 == "Unreleased" ? date : $NF
  if (number !~ /^[0-9][0-9.]*$/ || day !~ /^[0-9-]+$/ || length(day) != 10) {
    print "not a version with its date: " $0 > "/dev/stderr"
    failed = 1
    exit 1
  }
  printf "tockwise (%s-%s) unstable; urgency=medium\n\n", number, revision
  next
}
/^# / || day == "" { next }
/^$/ { flush_item(); next }
/^- / { flush_item(); item = substr($0, 3); next }
{ item = item " " $0 }

END {
  if (!failed)
    end_entry()
}
