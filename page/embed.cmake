# Files of web/ as C++ literals. The scripts are ES modules, so that eslint and node can read them; a page holds them one
# after the other in one function, without their imports and exports. Lines of comments and indentation stay out.

# A literal may have 64 KiB; longer ones are put together of several.
function(orv_literal variable text)
    set(result)
    string(LENGTH "${text}" length)
    set(at 0)
    while(at LESS length)
        string(SUBSTRING "${text}" ${at} 30000 part)
        string(APPEND result "R\"orvasset(${part})orvasset\"\n")
        math(EXPR at "${at} + 30000")
    endwhile()
    set(${variable} "${result}" PARENT_SCOPE)
endfunction()

function(orv_read variable file)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/web/${file})
    file(READ web/${file} text)
    string(REGEX REPLACE "\n[ ]+" "\n" text "${text}")
    set(${variable} "${text}" PARENT_SCOPE)
endfunction()

# orv_embed_text(VARIABLE FILE): as it stands.
function(orv_embed_text variable file)
    orv_read(text ${file})
    orv_literal(literal "${text}")
    set(${variable} "${literal}" PARENT_SCOPE)
endfunction()

# orv_embed_scripts(VARIABLE FILE...): one after the other.
function(orv_embed_scripts variable)
    set(all)
    foreach(file IN LISTS ARGN)
        orv_read(text ${file})
        string(PREPEND text "\n")
        string(REGEX REPLACE "\n//[^\n]*" "" text "${text}")
        string(REGEX REPLACE "\nimport [^\n]*" "" text "${text}")
        string(REGEX REPLACE "\nexport " "\n" text "${text}")
        string(REGEX REPLACE "\n\n+" "\n" text "${text}")
        string(APPEND all "${text}")
    endforeach()
    orv_literal(literal "${all}")
    set(${variable} "${literal}" PARENT_SCOPE)
endfunction()
