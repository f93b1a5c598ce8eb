// Test support: a shared object that is no plug-in.
extern "C" int labelcutTestNoPlugin() {
    return 1;
}
