if(TYPESLATE_HAVE_QT AND DBUS_FOUND)
  typeslate_fuzz(fuzz_user_information SOURCES fuzz_user_information.cpp LIBRARIES qt_messages linux_messages)
endif()
