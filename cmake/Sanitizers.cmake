# -DVARNIC_SANITIZE=LIST: the compiler's -fsanitize list, for everything that is built.
set(VARNIC_SANITIZE "" CACHE STRING "Sanitizers, as the compiler's -fsanitize list")

if(VARNIC_SANITIZE)
    add_compile_options(-fsanitize=${VARNIC_SANITIZE} -fno-omit-frame-pointer -g)
    add_link_options(-fsanitize=${VARNIC_SANITIZE})
    if(VARNIC_SANITIZE MATCHES "undefined")
        add_compile_options(-fno-sanitize-recover=undefined)
    endif()
endif()
