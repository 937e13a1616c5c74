# Has the program JSTORE archive its classes. Without an archive it works as well, and starts more slowly.
if(JSTORE)
  unset(ENV{JSTORE_CLASS_PATH})
  execute_process(COMMAND "${JSTORE}" doctor --make-archive RESULT_VARIABLE result OUTPUT_VARIABLE output)
  if(result)
    message(WARNING "jstore has no class archive, and starts more slowly for it:\n${output}")
  endif()
endif()
