// Gives the precompiled headers of the tests something to be compiled with.
