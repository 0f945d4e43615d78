# Build settings of the project's own targets, gathered in one interface
# target that each of them links privately. Nothing is set for the whole
# tree, and the targets of Qt and other dependencies are left as they are.

add_library(tab_build_options INTERFACE)

target_compile_options(tab_build_options INTERFACE -Wall -Wextra -Wno-unused-parameter)

# Assertions on feature ranges must end the process in every build. Qt's
# targets add QT_NO_DEBUG outside Debug builds, which turns Q_ASSERT off: the
# compiler takes it back out again (options follow definitions on the command
# line), so our code is built as Qt 4's debug-enabled builds were, and
# QT_FORCE_ASSERTS keeps Q_ASSERT on should a Qt header define it anyway.
target_compile_options(tab_build_options INTERFACE -UQT_NO_DEBUG)

target_compile_definitions(tab_build_options INTERFACE
    QT_FORCE_ASSERTS
    # Qt 4 names that Qt 5.15 still offers (toAscii, fromAscii,
    # qInstallMsgHandler) are hidden unless deprecated API back to 4.8 is
    # allowed. Their warnings are silenced in SharedSource/Qt4Compat.h.
    QT_DISABLE_DEPRECATED_BEFORE=0x040800)

# The link flags reach every executable, library and the plug-in that links
# this target, so that each loads the sanitizer runtime it was compiled for.
if(TAB_SANITIZE)
    # GCC leaves the float checks out of "undefined"; they are asked for by name.
    target_compile_options(tab_build_options INTERFACE
        -fsanitize=address,undefined,float-cast-overflow,float-divide-by-zero
        -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(tab_build_options INTERFACE
        -fsanitize=address,undefined,float-cast-overflow,float-divide-by-zero)
endif()

if(TAB_SANITIZE_THREAD)
    target_compile_options(tab_build_options INTERFACE -fsanitize=thread -fno-omit-frame-pointer)
    target_link_options(tab_build_options INTERFACE -fsanitize=thread)
endif()
