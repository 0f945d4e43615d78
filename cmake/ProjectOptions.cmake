# Build settings of the project's own targets, gathered in one interface
# target that each of them links privately. Nothing is set for the whole
# tree, and the targets of Qt and other dependencies are left as they are.

add_library(tab_build_options INTERFACE)

target_compile_options(tab_build_options INTERFACE -Wall -Wextra -Wno-unused-parameter)

target_compile_definitions(tab_build_options INTERFACE
    # Assertions on feature ranges must end the process in every build. Qt
    # adds QT_NO_DEBUG outside Debug builds, which turns Q_ASSERT off;
    # QT_FORCE_ASSERTS keeps it on whatever the build type.
    QT_FORCE_ASSERTS
    # Qt 4 names that Qt 5.15 still offers (toAscii, fromAscii,
    # qInstallMsgHandler) are hidden unless deprecated API back to 4.8 is
    # allowed. Their warnings are silenced in SharedSource/Qt4Compat.h.
    QT_DISABLE_DEPRECATED_BEFORE=0x040800)

# The link flags reach every executable, library and the plug-in that links
# this target, so that each loads the sanitizer runtime it was compiled for.
if(TAB_SANITIZE)
    target_compile_options(tab_build_options INTERFACE
        -fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
    target_link_options(tab_build_options INTERFACE -fsanitize=address,undefined)
endif()
