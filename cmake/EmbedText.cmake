# velclp_embed_text(TARGET SYMBOL FILE): compiles a text file into the target as
# `extern const char SYMBOL[]` with external linkage in namespace `embedded`.
# Run as a script (-P), it writes the source file.
if(CMAKE_SCRIPT_MODE_FILE)
    file(READ "${INPUT}" text)
    file(WRITE "${OUTPUT}" "namespace embedded {\n"
        "extern const char ${SYMBOL}[];\n"
        "const char ${SYMBOL}[] = R\"~embedded~(${text})~embedded~\";\n"
        "}\n")
    return()
endif()

set(VELCLP_EMBED_SCRIPT ${CMAKE_CURRENT_LIST_FILE})
function(velclp_embed_text target symbol file)
    set(output ${CMAKE_CURRENT_BINARY_DIR}/embedded_${symbol}.cpp)
    add_custom_command(OUTPUT ${output}
        COMMAND ${CMAKE_COMMAND} -DINPUT=${file} -DOUTPUT=${output} -DSYMBOL=${symbol}
            -P ${VELCLP_EMBED_SCRIPT}
        DEPENDS ${file} ${VELCLP_EMBED_SCRIPT}
        VERBATIM)
    target_sources(${target} PRIVATE ${output})
endfunction()
