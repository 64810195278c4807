# Debian packages, an archive that runs from any folder, and RPM packages, by CPack; see ./dev package.
set(VARNIC_SITE "https://brevin.app/varnic")
set(VARNIC_MAINTAINER "Brevin <varnic@brevin.app>")

# package_of(RESULT COMPONENT): the name of the package that a component is installed by.
function(package_of result component)
    if(component STREQUAL "program")
        set(${result} varnic PARENT_SCOPE)
    else()
        set(${result} varnic-${component} PARENT_SCOPE)
    endif()
endfunction()

# What dpkg-shlibdeps does not see: modules that QML files name, fonts, files of other packages that are read. The test
# PackageDependencies compares with what the programs use.
set(VARNIC_DEPENDS
    qml6-module-qtqml qml6-module-qtqml-models qml6-module-qtqml-workerscript qml6-module-qtquick
    qml6-module-qtquick-layouts qml6-module-qtquick-templates
    fonts-inter fonts-jetbrains-mono fonts-vollkorn
    hicolor-icon-theme
    # The client.conf without which PipeWire's library connects to nothing.
    pipewire-bin)
set(VARNIC_RECOMMENDS
    fonts-noto-color-emoji
    "gnome-keyring | kwalletmanager | keepassxc"
    pipewire-pulse
    qt6-wayland
    wireplumber
    xdg-desktop-portal
    xdg-utils)

set(CPACK_PACKAGE_NAME varnic)
set(CPACK_PACKAGE_VENDOR Brevin)
set(CPACK_PACKAGE_CONTACT "${VARNIC_MAINTAINER}")
set(CPACK_PACKAGE_HOMEPAGE_URL "${VARNIC_SITE}")
set(CPACK_PACKAGE_FILE_NAME "varnic-${PROJECT_VERSION}-linux-${CMAKE_SYSTEM_PROCESSOR}")
set(CPACK_PACKAGE_DIRECTORY "${CMAKE_BINARY_DIR}/packages")
set(CPACK_COMPONENTS_ALL)
foreach(component IN LISTS components)
    list(APPEND CPACK_COMPONENTS_ALL ${component} ${component}-system ${component}-debian)
endforeach()
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PROJECT_CONFIG_FILE "${CMAKE_CURRENT_LIST_DIR}/generators.cmake")

set(summary "private call recorder and note library")
set(description
"Varnic keeps a call as two tracks, your microphone and what the computer
plays, writes both down on your own machine and files the call as a note: a
transcript with who said what, key sentences, to-dos and a follow-up email. No
bot joins the call, and nothing leaves the machine. Notes can be written by
hand beside the calls, flashcards studied, and all of it searched.")
set(models_summary "speech model and detector for Varnic")
set(models_description
"What Varnic, a private call recorder, needs to write down English speech on
this machine: the speech model Moonshine tiny and the voice activity detector
Silero.")
set(whisper_summary "speech model of 99 languages for Varnic")
set(whisper_description
"What Varnic, a private call recorder, needs to write down speech of other
languages than English on this machine, and English with fewer wrong words at
three to four times the time: the speech model Whisper base.")

# Debian
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_VARNIC_PACKAGE_NAME varnic)
set(CPACK_DEBIAN_VARNIC_DESCRIPTION "${summary}\n${description}")
set(CPACK_DEBIAN_VARNIC_PACKAGE_SHLIBDEPS ON)
list(JOIN VARNIC_DEPENDS ", " depends)
set(CPACK_DEBIAN_VARNIC_PACKAGE_DEPENDS "${depends}, varnic-models (= ${PROJECT_VERSION})")
list(JOIN VARNIC_RECOMMENDS ", " CPACK_DEBIAN_VARNIC_PACKAGE_RECOMMENDS)
set(CPACK_DEBIAN_VARNIC_PACKAGE_SUGGESTS varnic-models-whisper)
set(CPACK_DEBIAN_VARNIC-MODELS_PACKAGE_NAME varnic-models)
set(CPACK_DEBIAN_VARNIC-MODELS_DESCRIPTION "${models_summary}\n${models_description}")
set(CPACK_DEBIAN_VARNIC-MODELS_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_VARNIC-MODELS_PACKAGE_ENHANCES varnic)
set(CPACK_DEBIAN_VARNIC-MODELS-WHISPER_PACKAGE_NAME varnic-models-whisper)
set(CPACK_DEBIAN_VARNIC-MODELS-WHISPER_DESCRIPTION "${whisper_summary}\n${whisper_description}")
set(CPACK_DEBIAN_VARNIC-MODELS-WHISPER_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_VARNIC-MODELS-WHISPER_PACKAGE_ENHANCES varnic)

# RPM. Built on Debian it asks for Debian's libraries; another distribution builds its own by the same words.
set(CPACK_RPM_COMPONENT_INSTALL ON)
set(CPACK_RPM_FILE_NAME RPM-DEFAULT)
set(CPACK_RPM_MAIN_COMPONENT varnic)
set(CPACK_RPM_PACKAGE_RELEASE 1)
set(CPACK_RPM_PACKAGE_LICENSE GPLv3+)
set(CPACK_RPM_PACKAGE_GROUP "Applications/Multimedia")
set(CPACK_RPM_PACKAGE_URL "${VARNIC_SITE}")
set(CPACK_RPM_PACKAGE_AUTOPROV OFF)
set(CPACK_RPM_VARNIC_PACKAGE_SUMMARY "Private call recorder and note library")
set(CPACK_RPM_VARNIC_PACKAGE_DESCRIPTION "${description}")
# Files of packages whose names differ from one distribution to the next; for which ones, see VARNIC_DEPENDS.
set(CPACK_RPM_VARNIC_PACKAGE_REQUIRES
    "varnic-models = ${PROJECT_VERSION}, /usr/share/pipewire/client.conf, /usr/share/icons/hicolor/index.theme")
set(CPACK_RPM_VARNIC_PACKAGE_SUGGESTS varnic-models-whisper)
set(CPACK_RPM_VARNIC-MODELS_PACKAGE_NAME varnic-models)
set(CPACK_RPM_VARNIC-MODELS_PACKAGE_SUMMARY "Speech model and detector for Varnic")
set(CPACK_RPM_VARNIC-MODELS_PACKAGE_DESCRIPTION "${models_description}")
set(CPACK_RPM_VARNIC-MODELS_PACKAGE_ARCHITECTURE noarch)
set(CPACK_RPM_VARNIC-MODELS-WHISPER_PACKAGE_NAME varnic-models-whisper)
set(CPACK_RPM_VARNIC-MODELS-WHISPER_PACKAGE_SUMMARY "Speech model of 99 languages for Varnic")
set(CPACK_RPM_VARNIC-MODELS-WHISPER_PACKAGE_DESCRIPTION "${whisper_description}")
set(CPACK_RPM_VARNIC-MODELS-WHISPER_PACKAGE_ARCHITECTURE noarch)
set(CPACK_RPM_CHANGELOG_FILE "${CMAKE_CURRENT_BINARY_DIR}/changelog.rpm")
# The package's own libraries are nobody else's to bring.
set(CPACK_RPM_SPEC_MORE_DEFINE "%global __requires_exclude ^lib(onnxruntime|sherpa-onnx).*$
%define _build_id_links none
Packager: ${VARNIC_MAINTAINER}")
set(CPACK_RPM_EXCLUDE_FROM_AUTO_FILELIST_ADDITION
    /usr/share/applications /usr/share/bash-completion /usr/share/bash-completion/completions /usr/share/dbus-1
    /usr/share/dbus-1/services /usr/share/fish /usr/share/fish/vendor_completions.d /usr/share/icons
    /usr/share/icons/hicolor /usr/share/man /usr/share/man/man1 /usr/share/metainfo /usr/share/zsh
    /usr/share/zsh/site-functions /usr/share/zsh/vendor-completions)
foreach(size IN ITEMS 16x16 22x22 24x24 32x32 48x48 64x64 128x128 256x256 512x512 scalable symbolic)
    list(APPEND CPACK_RPM_EXCLUDE_FROM_AUTO_FILELIST_ADDITION
        /usr/share/icons/hicolor/${size} /usr/share/icons/hicolor/${size}/apps)
endforeach()

include(CPack)
foreach(component IN LISTS components)
    package_of(package ${component})
    cpack_add_component_group(${package})
    cpack_add_component(${component} GROUP ${package})
    cpack_add_component(${component}-system GROUP ${package})
    cpack_add_component(${component}-debian GROUP ${package})
endforeach()
