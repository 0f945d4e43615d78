# Build settings shared by every target of the project.

# Assertions on feature ranges must end the process in every build, so Qt's
# QT_NO_DEBUG, which its CMake files add to all but Debug builds, is taken out.
get_target_property(_tab_core_defs Qt5::Core INTERFACE_COMPILE_DEFINITIONS)
if(_tab_core_defs)
    list(FILTER _tab_core_defs EXCLUDE REGEX "QT_NO_DEBUG")
    set_target_properties(Qt5::Core PROPERTIES INTERFACE_COMPILE_DEFINITIONS "${_tab_core_defs}")
endif()
unset(_tab_core_defs)

# Qt 4 names that Qt 5.15 still offers (toAscii, fromAscii, qInstallMsgHandler)
# are hidden unless deprecated API back to 4.8 is allowed.
add_compile_definitions(QT_DISABLE_DEPRECATED_BEFORE=0x040800)

add_compile_options(-Wall -Wextra -Wno-unused-parameter)

if(TAB_SANITIZE)
    # GCC leaves the float checks out of "undefined"; they are asked for by name.
    add_compile_options(-fsanitize=address,undefined,float-cast-overflow,float-divide-by-zero
                        -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=address,undefined,float-cast-overflow,float-divide-by-zero)
endif()

if(TAB_SANITIZE_THREAD)
    add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
    add_link_options(-fsanitize=thread)
endif()
