# The layers of Gandrel, and how the build keeps them one-way.
#
#   calc <- dice <- functions <- script <- dist <- shell (src/app without Qt)
#        <- front ends (src/cli, the Qt windows src/app/frm* and Qt*)
#
# A layer's sources do not see the whole of src/: each target's include root
# is a folder of links to its own folder and the folders below it, so an
# #include that reaches upwards names a file the compiler cannot find.
# src/app holds the shell and the windows side by side; the shell's root links
# only the headers of src/app that use no Qt. check_layers.cmake, run as a
# test, says the same in words.

set(GANDREL_LAYER_ROOTS ${CMAKE_BINARY_DIR}/layers)

# The Qt files of src/app belong to the windows, all others to the shell.
function(gandrel_is_window_file file out)
  get_filename_component(name ${file} NAME)
  if(name MATCHES "^(frm|Qt)")
    set(${out} TRUE PARENT_SCOPE)
  else()
    set(${out} FALSE PARENT_SCOPE)
  endif()
endfunction()

# Makes the include root of a layer: links to the whole folders given, and,
# for the shell, to the Qt-free headers of src/app.
function(gandrel_layer_root layer)
  cmake_parse_arguments(ARG "WITH_SHELL_HEADERS" "" "FOLDERS" ${ARGN})
  set(root ${GANDREL_LAYER_ROOTS}/${layer})
  file(REMOVE_RECURSE ${root})
  file(MAKE_DIRECTORY ${root})
  foreach(folder ${ARG_FOLDERS})
    file(CREATE_LINK ${PROJECT_SOURCE_DIR}/src/${folder} ${root}/${folder} SYMBOLIC)
  endforeach()
  if(ARG_WITH_SHELL_HEADERS)
    file(MAKE_DIRECTORY ${root}/app)
    file(GLOB headers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/app/*.h)
    foreach(header ${headers})
      gandrel_is_window_file(${header} window)
      if(NOT window)
        get_filename_component(name ${header} NAME)
        file(CREATE_LINK ${header} ${root}/app/${name} SYMBOLIC)
      endif()
    endforeach()
  endif()
  set(GANDREL_LAYER_ROOT_${layer} ${root} PARENT_SCOPE)
endfunction()

# A static library of one engine layer: the sources of src/<folder>, its
# include root, and the layer below.
function(gandrel_engine_layer target folder below)
  file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/${folder}/*.cpp)
  add_library(${target} STATIC ${sources})
  gandrel_layer_root(${folder} FOLDERS ${ARGN} ${folder})
  target_include_directories(${target} PUBLIC ${GANDREL_LAYER_ROOT_${folder}})
  if(below)
    target_link_libraries(${target} PUBLIC ${below})
  endif()
endfunction()
