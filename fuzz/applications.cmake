if(GLIB_FOUND)
  typeslate_fuzz(fuzz_desktop_entry SOURCES ${CMAKE_SOURCE_DIR}/fuzz/FuzzDesktopEntry.cpp LIBRARIES linux_platform)
  typeslate_fuzz(fuzz_desktop_command SOURCES fuzz_desktop_command.cpp LIBRARIES linux_platform)
endif()
