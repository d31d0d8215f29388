if(TARGET platform_rich_text)
  typeslate_fuzz(fuzz_rich_text SOURCES fuzz_rich_text.cpp LIBRARIES platform_rich_text)
endif()
