# Installs the build into WORK, builds the consumer against it and has both programs play a file.
function(run)
  execute_process(COMMAND ${ARGN} WORKING_DIRECTORY ${WORK} COMMAND_ERROR_IS_FATAL ANY OUTPUT_VARIABLE output)
  set(output ${output} PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/installed)

# No header comes from anywhere but the installed tree, and each finds all that it includes.
file(GLOB_RECURSE headers RELATIVE ${WORK}/installed/include/qmSoundCore ${WORK}/installed/include/*.h)
set(includes "")
foreach(header ${headers})
  string(APPEND includes "#include \"${header}\"\n")
endforeach()
file(WRITE ${WORK}/every_header.cpp "${includes}")
file(COPY ${SOURCE}/tests/install/consumer ${SOURCE}/examples/play_one.cpp DESTINATION ${WORK})

set(flags "")
if(SANITIZE)
  set(flags "-fsanitize=${SANITIZE}")
endif()
run(${CMAKE_COMMAND} -S consumer -B built -G Ninja -D CMAKE_PREFIX_PATH=${WORK}/installed
  -D CMAKE_CXX_COMPILER=${COMPILER} -D CMAKE_CXX_FLAGS=${flags})
run(${CMAKE_COMMAND} --build built)

# A tenth of a second of silence: 44100 Hz, mono, 16 bits.
set(header "RIFF\\230\\042\\000\\000WAVEfmt \\020\\000\\000\\000\\001\\000\\001\\000\\104\\254\\000\\000")
string(APPEND header "\\210\\130\\001\\000\\002\\000\\020\\000data\\164\\042\\000\\000")
run(sh -c "(printf '${header}' && head -c 8820 /dev/zero) > in.wav")

run(built/consumer in.wav wav:out.wav)
if(NOT output MATCHES "frame 4410  peAudioEndReached")
  message(FATAL_ERROR "The consumer did not play:\n${output}")
endif()
run(installed/bin/quillmere play in.wav --device wav:out.wav)
if(NOT output MATCHES "audio end")
  message(FATAL_ERROR "The installed program did not play:\n${output}")
endif()
