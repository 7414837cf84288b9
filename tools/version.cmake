# Writes the header OUTPUT with VERSION and the commit of the SOURCE folder. A file that would not
# change is left alone, and what depends on it is not built again.
execute_process(COMMAND git -c "safe.directory=*" -C ${SOURCE} describe --always --dirty --exclude=*
                OUTPUT_VARIABLE commit OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
if(NOT commit)
    set(commit "unknown commit")
endif()
file(CONFIGURE OUTPUT ${OUTPUT} CONTENT "#define VERSION_TEXT \"${VERSION} (${commit})\"\n")
