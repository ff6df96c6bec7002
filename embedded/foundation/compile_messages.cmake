# Joins the .po files TEXTS of one language to the file JOINED and compiles that to OUTPUT. Fails on a message that
# stands in two files.

execute_process(COMMAND ${MSGCAT} --more-than=1 --use-first ${TEXTS} OUTPUT_VARIABLE doubles COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "msgid \"[^\"\n]+\"" doubles "${doubles}")
if(doubles)
  message(FATAL_ERROR "More than one .po file defines: ${doubles}")
endif()

execute_process(COMMAND ${MSGCAT} --use-first -o ${JOINED} ${TEXTS} COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${MSGFMT} -o ${OUTPUT} ${JOINED} COMMAND_ERROR_IS_FATAL ANY)
