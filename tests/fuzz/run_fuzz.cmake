# Runs a fuzz target on a copy of its seeds. In: PROGRAM, SECONDS, SEEDS, WORK.
set(corpus "${WORK}/corpus")
file(REMOVE_RECURSE "${corpus}")
file(COPY "${SEEDS}/" DESTINATION "${corpus}")
execute_process(COMMAND "${PROGRAM}" -max_total_time=${SECONDS} -rss_limit_mb=2048 -timeout=10 -max_len=16384
  -print_final_stats=1 "-artifact_prefix=${WORK}/" "${corpus}" RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "${PROGRAM} ended with ${status}; its input is kept in ${WORK}")
endif()
