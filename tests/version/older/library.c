/* As much of an older library as it takes to load it. */
#if defined(_WIN32)
__declspec(dllexport)
#endif
    void vekParamsDelete(void *text);

void vekParamsDelete(void *text) {
    (void)text;
}
