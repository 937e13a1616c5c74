# Has the program JSTORE archive its classes. Without an archive it works as well, and starts more slowly.
if(JSTORE)
  # The archive is for commands that are given none of this.
  foreach(variable IN ITEMS JSTORE_CLASS_PATH JAVA_TOOL_OPTIONS _JAVA_OPTIONS)
    unset(ENV{${variable}})
  endforeach()
  execute_process(COMMAND "${JSTORE}" doctor --make-archive RESULT_VARIABLE result OUTPUT_VARIABLE output)
  if(result)
    message(WARNING "jstore has no class archive, and starts more slowly for it:\n${output}")
  endif()
endif()
