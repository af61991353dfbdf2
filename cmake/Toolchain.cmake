# Compiler flags that every target of the project shares.
add_library(velclp_options INTERFACE)
target_compile_options(velclp_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow)
if(VELCLP_WERROR)
    target_compile_options(velclp_options INTERFACE -Werror)
endif()
if(VELCLP_SANITIZE)
    add_compile_options(-fsanitize=${VELCLP_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${VELCLP_SANITIZE})
    # pthread_exit unwinds a thread by an exception without an object, so that a handler for it binds
    # a reference to null.
    if(VELCLP_SANITIZE MATCHES undefined)
        add_compile_options(-fno-sanitize=null)
    endif()
endif()
if(VELCLP_COVERAGE)
    add_compile_options(--coverage -O0)
    add_link_options(--coverage)
endif()
# A command's thread may end in pthread_exit, which unwinds C frames too.
add_compile_options(-fexceptions)

find_program(VELCLP_CCACHE ccache)
mark_as_advanced(VELCLP_CCACHE)
if(VELCLP_CCACHE)
    set(CMAKE_C_COMPILER_LAUNCHER ${VELCLP_CCACHE})
    set(CMAKE_CXX_COMPILER_LAUNCHER ${VELCLP_CCACHE})
endif()

# A controller's flash is small: what -O3 adds in size it does not give back in speed here.
string(REPLACE "-O3" "-O2" CMAKE_CXX_FLAGS_RELEASE "${CMAKE_CXX_FLAGS_RELEASE}")
string(REPLACE "-O3" "-O2" CMAKE_C_FLAGS_RELEASE "${CMAKE_C_FLAGS_RELEASE}")
add_compile_options(-ffunction-sections -fdata-sections)
add_link_options(-Wl,--gc-sections)
