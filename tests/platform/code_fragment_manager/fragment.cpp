// A library that is there to be found. Built beside the tests, loaded by some of them.
extern "C" {
__attribute__((visibility("default"))) int FragmentAnswer() {
    return 42;
}
__attribute__((visibility("default"))) int gFragmentNumber = 7;
}
