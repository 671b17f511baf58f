# Shipped code checks its stack frames and the bounds that the compiler knows, and resolves all symbols when it is loaded.
add_compile_options($<$<CONFIG:Release>:-fstack-protector-strong> $<$<CONFIG:Release>:-U_FORTIFY_SOURCE>
                    $<$<CONFIG:Release>:-D_FORTIFY_SOURCE=2>)
add_link_options($<$<CONFIG:Release>:LINKER:-z,relro,-z,now>)
