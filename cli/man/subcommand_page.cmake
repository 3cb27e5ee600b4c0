# Makes the manual page of one subcommand out of the tool's page: its line of the synopsis and its section.
# cmake -DPAGE=vantrel.1.scd -DNAME=clip -DOUT=vantrel-clip.1.scd -P subcommand_page.cmake
file(READ ${PAGE} page)
string(REGEX MATCH "\n\\*vantrel\\* \\*${NAME}\\*[^\n]*" synopsis "${page}")
string(REGEX REPLACE "\\+\\+$" "" synopsis "${synopsis}")
string(FIND "${page}" "\n## ${NAME}\n" start)
if(start EQUAL -1 OR synopsis STREQUAL "")
  message(FATAL_ERROR "${PAGE} does not describe ${NAME}")
endif()
string(SUBSTRING "${page}" ${start} -1 section)
string(REGEX REPLACE "^\n## ${NAME}\n\n" "" section "${section}")
string(FIND "${section}" "\n#" end)
string(SUBSTRING "${section}" 0 ${end} section)
string(FIND "${section}" ".\n" sentence_end_at_line)
string(FIND "${section}" ". " sentence_end)
if(sentence_end EQUAL -1 OR (sentence_end_at_line GREATER -1 AND sentence_end_at_line LESS sentence_end))
  set(sentence_end ${sentence_end_at_line})
endif()
string(SUBSTRING "${section}" 0 ${sentence_end} purpose)
string(REPLACE "\n" " " purpose "${purpose}")
file(WRITE ${OUT} "vantrel-${NAME}(1)

# NAME

vantrel-${NAME} - ${purpose}

# SYNOPSIS
${synopsis}

# DESCRIPTION

${section}
# SEE ALSO

*vantrel*(1) describes the options that it shares with other subcommands, what is printed, the JSON, and the exit
status.
")
