# What a Windows build installs, by component, for the release package:
#   runtime  the DLL, its type library and the registration tool (one
#            architecture; the package puts each in its own folder)
#   sdk      the C and C++ declarations generated from the IDL, the callbacks
#            helper and the IDL itself (the same for every architecture)
include_guard(GLOBAL)

install(TARGETS BrevoRecordList RUNTIME DESTINATION . COMPONENT runtime
        ARCHIVE DESTINATION lib COMPONENT import_library)
install(FILES "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/BrevoRecordList.tlb" DESTINATION . COMPONENT runtime)
install(TARGETS brevo-regtlb RUNTIME DESTINATION . COMPONENT runtime)
install(DIRECTORY "${BREVO_SDK_INCLUDE_DIR}/" DESTINATION include COMPONENT sdk)
install(FILES "${PROJECT_SOURCE_DIR}/idl/BrevoRecordList.idl" DESTINATION include COMPONENT sdk)
