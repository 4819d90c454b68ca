# The product, its companions, the setup program, and the test programs for Windows.
set(OUT ${CMAKE_SOURCE_DIR}/out)
set(MADE ${CMAKE_BINARY_DIR}/made)  # icons and other inputs of the resource compiler
file(MAKE_DIRECTORY ${OUT} ${MADE})
enable_language(RC)

add_compile_definitions(_WIN32_WINNT=0x0500 WINVER=0x0500 _WIN32_IE=0x0600 UNICODE _UNICODE)
add_compile_options("$<$<COMPILE_LANGUAGE:CXX>:-Os;-ffunction-sections;-fdata-sections;-fno-exceptions;-fno-asynchronous-unwind-tables;-fno-rtti>")
add_link_options(-static -s -Wl,--gc-sections)
set(CMAKE_RC_FLAGS "--use-temp-file -c 65001")
set(SYSTEM_LIBRARIES z wininet urlmon version winmm comctl32 comdlg32 shell32 shlwapi oleaut32 ole32 uuid wbemuuid
    mpr psapi gdi32 advapi32 user32)

# --- icons ---------------------------------------------------------------------------------------------------------
file(GLOB icons CONFIGURE_DEPENDS resources/icons/*.svg)
foreach(svg ${icons})
    cmake_path(GET svg STEM name)
    add_custom_command(OUTPUT ${MADE}/${name}.ico
        COMMAND ${CMAKE_SOURCE_DIR}/workshop/make_icon ${svg} ${MADE}/${name}.ico
        DEPENDS ${svg} ${CMAKE_SOURCE_DIR}/workshop/make_icon
        COMMENT "Icon ${name}.ico")
    list(APPEND made_icons ${MADE}/${name}.ico)
endforeach()
add_custom_target(icons DEPENDS ${made_icons})

# --- logic and the Windows side of the platform layer, compiled once for product, companions and contract tests ------
set(ENTRY src/platform/win32/entry.cpp)  # WinMain
list(REMOVE_ITEM WIN32_LAYER ${CMAKE_SOURCE_DIR}/${ENTRY})
add_library(logic STATIC ${LOGIC} ${WIN32_LAYER})
target_compile_options(logic PRIVATE ${WARNINGS})

# --- companions: folder under tools/, program, administrator rights; of src/ each takes what it uses, no window ------------------------------
function(companion folder program)
    cmake_parse_arguments(TOOL "ADMINISTRATOR;WINDOWLESS" "" "" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS tools/${folder}/*.cpp)
    if(NOT sources)
        return()
    endif()
    add_executable(${program} WIN32 ${sources} resources/tool.rc)
    target_compile_options(${program} PRIVATE "$<$<COMPILE_LANGUAGE:CXX>:${WARNINGS}>")
    target_compile_definitions(${program} PRIVATE TOOL_NAME=${program}
        $<$<BOOL:${TOOL_ADMINISTRATOR}>:TOOL_ADMINISTRATOR> $<$<BOOL:${TOOL_WINDOWLESS}>:TOOL_WINDOWLESS>)
    target_include_directories(${program} PRIVATE resources ${MADE})
    target_link_libraries(${program} logic ${SYSTEM_LIBRARIES})
    set_target_properties(${program} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${OUT})
    add_dependencies(${program} icons)
    set_property(GLOBAL APPEND PROPERTY COMPANIONS ${program})
endfunction()

companion(external_ip GetExternalIP WINDOWLESS)
companion(create_srp CreateSRP ADMINISTRATOR)
companion(safe_mode Pelmark ADMINISTRATOR)
companion(maintenance_check BrevantaMCStub)

# libcurl with SMTP and the system's own TLS alone, for the mail companion. dev keeps it with the other caches.
set(CURL ${CMAKE_BINARY_DIR}/curl CACHE PATH "Where libcurl for the mail companion is built")
add_custom_command(OUTPUT ${CURL}/lib/libcurl.a
    COMMAND ${CMAKE_SOURCE_DIR}/workshop/make_curl ${CURL}
    DEPENDS ${CMAKE_SOURCE_DIR}/workshop/make_curl
    COMMENT "libcurl for the mail companion")
add_custom_target(curl DEPENDS ${CURL}/lib/libcurl.a)
companion(send_mail SendMail WINDOWLESS)
add_dependencies(SendMail curl)
target_include_directories(SendMail SYSTEM PRIVATE ${CURL}/include)
target_compile_definitions(SendMail PRIVATE CURL_STATICLIB)
set_property(TARGET SendMail APPEND PROPERTY LINK_DEPENDS ${CURL}/lib/libcurl.a)
target_link_libraries(SendMail ${CURL}/lib/libcurl.a ws2_32 crypt32 bcrypt)
get_property(companions GLOBAL PROPERTY COMPANIONS)

# --- the product -----------------------------------------------------------------------------------------------------
if(EXISTS ${CMAKE_SOURCE_DIR}/${ENTRY})
    add_executable(product WIN32 ${ENTRY} resources/brevanta.rc)
    target_compile_options(product PRIVATE "$<$<COMPILE_LANGUAGE:CXX>:${WARNINGS}>")
    target_link_libraries(product logic ${SYSTEM_LIBRARIES})
    # Sections at whole pages of the file are mapped and shared; others are read into memory of the process's own.
    target_link_options(product PRIVATE -Wl,--file-alignment,4096)
    set_target_properties(product PROPERTIES OUTPUT_NAME Brevanta RUNTIME_OUTPUT_DIRECTORY ${OUT})
    target_include_directories(product PRIVATE resources ${MADE} ${OUT})

    find_file(ZLIB_DLL zlib1.dll PATHS /usr/i686-w64-mingw32/lib REQUIRED NO_CMAKE_FIND_ROOT_PATH)
    add_custom_command(OUTPUT ${MADE}/zlib.deflated
        COMMAND ${CMAKE_SOURCE_DIR}/workshop/deflate ${ZLIB_DLL} ${MADE}/zlib.deflated)
    set(carried ${CMAKE_SOURCE_DIR}/resources/brevanta.manifest ${CMAKE_SOURCE_DIR}/resources/WinsockXP.reg
        ${made_icons} ${MADE}/zlib.deflated)
    target_compile_definitions(product PRIVATE BREVANTA_HAS_ZLIB)
    foreach(program GetExternalIP CreateSRP SendMail)
        if(program IN_LIST companions)
            string(TOUPPER ${program} name)
            target_compile_definitions(product PRIVATE BREVANTA_HAS_${name})
            add_custom_command(OUTPUT ${MADE}/${program}.deflated
                COMMAND ${CMAKE_SOURCE_DIR}/workshop/deflate ${OUT}/${program}.exe ${MADE}/${program}.deflated
                DEPENDS ${program} ${CMAKE_SOURCE_DIR}/workshop/deflate)
            list(APPEND carried ${MADE}/${program}.deflated)
        endif()
    endforeach()
    if(EXISTS ${CMAKE_SOURCE_DIR}/resources/ccrpprg6.ocx)
        target_compile_definitions(product PRIVATE BREVANTA_HAS_CCPB)
        list(APPEND carried ${CMAKE_SOURCE_DIR}/resources/ccrpprg6.ocx)
    endif()
    set_source_files_properties(resources/brevanta.rc PROPERTIES OBJECT_DEPENDS "${carried}")

    file(GLOB installer CONFIGURE_DEPENDS installer/*)
    if(EXISTS ${CMAKE_SOURCE_DIR}/installer/setup.nsi)
        add_custom_command(OUTPUT ${OUT}/BrevantaSetup.exe
            COMMAND makensis -V2 -INPUTCHARSET UTF8 -DOUT=${OUT} -DMADE=${MADE} -DVERSION=${PROJECT_VERSION}
                -DSOURCE=${CMAKE_SOURCE_DIR} ${CMAKE_SOURCE_DIR}/installer/setup.nsi
            DEPENDS ${installer} product ${companions}
            COMMENT "Setup program")
        add_custom_target(setup ALL DEPENDS ${OUT}/BrevantaSetup.exe)
    endif()
endif()

# --- contract tests: the same assertions as on the simulated PC, here on the Windows layer --------------------------------
if(CONTRACT_TESTS)
    set(GTEST /usr/src/googletest/googletest)
    add_library(gtest STATIC EXCLUDE_FROM_ALL ${GTEST}/src/gtest-all.cc ${GTEST}/src/gtest_main.cc)
    target_include_directories(gtest SYSTEM PUBLIC ${GTEST}/include PRIVATE ${GTEST})
    target_compile_definitions(gtest PUBLIC GTEST_HAS_RTTI=0 GTEST_HAS_EXCEPTIONS=0)
    target_compile_options(gtest PUBLIC "$<$<COMPILE_LANGUAGE:CXX>:SHELL:-include ${CMAKE_SOURCE_DIR}/cmake/gtest_win32.h>")
    add_executable(contract_tests ${CONTRACT_TESTS} ${TOOL_LOGIC} tests/windows/contract_env.cpp resources/tool.rc)
    target_compile_options(contract_tests PRIVATE "$<$<COMPILE_LANGUAGE:CXX>:${WARNINGS}>")
    target_compile_definitions(contract_tests PRIVATE TOOL_NAME=contract_tests)
    target_include_directories(contract_tests PRIVATE resources ${MADE} ${CMAKE_SOURCE_DIR} tests)
    target_link_libraries(contract_tests logic gtest ${SYSTEM_LIBRARIES})
    add_dependencies(contract_tests icons)
endif()

# --- driver and other test programs; comparisons to run under Wine ----------------------------------------------------------
file(GLOB programs CONFIGURE_DEPENDS tests/windows/*.cpp)
list(FILTER programs EXCLUDE REGEX "/(contract_env|message_object)\\.cpp$")
file(GLOB comparisons CONFIGURE_DEPENDS bench/windows/*.cpp)
foreach(source ${programs} ${comparisons})
    cmake_path(GET source STEM name)
    add_executable(${name} ${source})
    target_compile_options(${name} PRIVATE "$<$<COMPILE_LANGUAGE:CXX>:${WARNINGS}>")
    if(name STREQUAL "gallery" OR source IN_LIST comparisons)
        target_link_libraries(${name} logic)
        target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR})
    endif()
    target_link_libraries(${name} ${SYSTEM_LIBRARIES})
endforeach()
if(programs)
    add_library(message_object MODULE tests/windows/message_object.cpp)
    target_compile_options(message_object PRIVATE "$<$<COMPILE_LANGUAGE:CXX>:${WARNINGS}>")
    target_link_options(message_object PRIVATE -Wl,--kill-at,--exclude-libs,ALL)
    target_link_libraries(message_object oleaut32 ole32 uuid)
    set_target_properties(message_object PROPERTIES PREFIX "")
endif()
# Its bare window has the panel's manifest, and so the same common controls.
target_sources(start_bench PRIVATE resources/tool.rc)
target_compile_definitions(start_bench PRIVATE TOOL_NAME=start_bench TOOL_WINDOWLESS)
target_include_directories(start_bench PRIVATE resources ${MADE})
# Shows the program's own controls: with its logic, manifest and icons.
target_sources(gallery PRIVATE tests/windows/gallery.rc)
target_compile_definitions(gallery PRIVATE TOOL_NAME=gallery)
target_include_directories(gallery PRIVATE resources ${MADE})
set_target_properties(gallery PROPERTIES WIN32_EXECUTABLE ON)
add_dependencies(gallery icons)
