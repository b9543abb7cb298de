# Type libraries and automation servers.
#
# add_type_library(NAME <name> IDL <file> [IMPORTS <name>...])
#     Compiles <file> into ${CMAKE_BINARY_DIR}/idl/<name>_h.h, <name>_i.c and <name>.tlb. Who links the target
#     <name>_idl has the header on the include path and the identities linked. IMPORTS are the type libraries that
#     the file imports.
#
# add_com_server(NAME <name> DEF <file> SOURCES <file>... LIBRARIES <target>... [DESCRIPTION <text>])
#     Builds ${CMAKE_BINARY_DIR}/bin/<name>.dll around the type library <name>, exporting what the .def file names.

set(IDL_OUTPUT ${CMAKE_BINARY_DIR}/idl)
set(WINE_IDL /usr/include/wine/wine/windows CACHE PATH "Folder of the system IDL files (libwine-dev)")
# stdole2.tlb is the same for both architectures.
set(WINE_LIBRARIES /usr/lib/${CMAKE_HOST_SYSTEM_PROCESSOR}-linux-gnu/wine/x86_64-windows CACHE PATH
    "Folder of Wine's 64-bit Windows libraries (stdole2.tlb)")
file(MAKE_DIRECTORY ${IDL_OUTPUT})

function(add_type_library)
  cmake_parse_arguments(PARSE_ARGV 0 arg "" "NAME;IDL" "IMPORTS")
  cmake_path(ABSOLUTE_PATH arg_IDL)
  set(header ${IDL_OUTPUT}/${arg_NAME}_h.h)
  set(identities ${IDL_OUTPUT}/${arg_NAME}_i.c)
  set(library ${IDL_OUTPUT}/${arg_NAME}.tlb)
  # An importing header includes <name>.h, whatever this one was told to be called.
  file(WRITE ${IDL_OUTPUT}/${arg_NAME}.h.new "#include \"${arg_NAME}_h.h\"\n")
  file(COPY_FILE ${IDL_OUTPUT}/${arg_NAME}.h.new ${IDL_OUTPUT}/${arg_NAME}.h ONLY_IF_DIFFERENT)
  file(REMOVE ${IDL_OUTPUT}/${arg_NAME}.h.new)

  set(folders -I ${WINE_IDL} -I ${PROJECT_SOURCE_DIR}/platform/idl -L ${WINE_LIBRARIES} -L ${IDL_OUTPUT})
  set(imported "")
  foreach(import IN LISTS arg_IMPORTS)
    get_target_property(files ${import}_idl IDL_FILES)
    list(APPEND imported ${files})
  endforeach()
  add_custom_command(
    OUTPUT ${header} ${identities} ${library}
    COMMAND ${WIDL} ${folders} -h -H ${header} ${arg_IDL}
    COMMAND ${WIDL} ${folders} -u -o ${identities} ${arg_IDL}
    COMMAND ${WIDL} ${folders} -t -o ${library} ${arg_IDL}
    DEPENDS ${arg_IDL} ${imported}
    COMMENT "Compiling the type library ${arg_NAME}"
    VERBATIM)

  add_library(${arg_NAME}_idl STATIC ${identities} ${header} ${library})
  set_target_properties(${arg_NAME}_idl PROPERTIES IDL_FILES "${arg_IDL};${library};${imported}")
  target_include_directories(${arg_NAME}_idl SYSTEM INTERFACE ${IDL_OUTPUT})
  target_link_libraries(${arg_NAME}_idl PRIVATE project_warnings)
  foreach(import IN LISTS arg_IMPORTS)
    target_link_libraries(${arg_NAME}_idl PUBLIC ${import}_idl)
  endforeach()
endfunction()

function(add_com_server)
  cmake_parse_arguments(PARSE_ARGV 0 arg "" "NAME;DEF;DESCRIPTION" "SOURCES;LIBRARIES")
  if(NOT arg_DESCRIPTION)
    set(arg_DESCRIPTION ${arg_NAME})
  endif()
  cmake_path(ABSOLUTE_PATH arg_DEF)
  set(SERVER ${arg_NAME})
  set(SERVER_DESCRIPTION ${arg_DESCRIPTION})
  set(resource ${IDL_OUTPUT}/${arg_NAME}.rc)
  set(object ${IDL_OUTPUT}/${arg_NAME}_resource.o)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/Server.rc.in ${resource} @ONLY)
  # Called in the folder of its files, because windres does not quote a path with blanks for its preprocessor.
  add_custom_command(
    OUTPUT ${object}
    COMMAND ${CMAKE_RC_COMPILER} ${arg_NAME}.rc ${arg_NAME}_resource.o
    WORKING_DIRECTORY ${IDL_OUTPUT}
    DEPENDS ${resource} ${IDL_OUTPUT}/${arg_NAME}.tlb
    VERBATIM)

  add_library(${arg_NAME} SHARED ${arg_SOURCES} ${arg_DEF} ${object})
  set_target_properties(${arg_NAME} PROPERTIES PREFIX "" IMPORT_PREFIX "lib")
  # Lets the plain names of the .def file stand for the 32-bit stdcall names.
  target_link_options(${arg_NAME} PRIVATE -Wl,--enable-stdcall-fixup)
  target_link_libraries(${arg_NAME} PRIVATE project_warnings ${arg_LIBRARIES} ${arg_NAME}_idl ole32 oleaut32 uuid)
endfunction()
