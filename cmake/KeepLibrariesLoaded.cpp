// Linked into the programs of a sanitizer build: a plug-in or driver that is
// unloaded before the leak check takes with it the globals through which its
// memory is still reached, and its name in the report; the thread sanitizer
// stops when a library leaves that a suppression names.
extern "C" __attribute__((visibility("default"))) int dlclose(void* /*handle*/)
{
    return 0;
}
