if(TARGET rich_text)
  typeslate_fuzz(fuzz_rich_text SOURCES fuzz_rich_text.cpp LIBRARIES rich_text)
endif()
