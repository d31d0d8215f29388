foreach(name font_list font_database escaped_name)
  typeslate_fuzz(fuzz_${name} SOURCES fuzz_${name}.cpp Reference.cpp
                              LIBRARIES typeslate_bundle_code propertylist)
endforeach()
