// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT

// Several threads may hold the same exception; the one that lets go of it last destroys it. The standard library counts
// them where the thread sanitizer does not look, which then takes what a thread read of the exception for a race with
// its end. Builds with the thread sanitizer, and no others, put these functions between our code and the library (the
// linker's --wrap).

#include <exception>

#include <sanitizer/tsan_interface.h>

namespace {

/// The standard promises that whoever counts down later comes after whoever did before.
void countDown(void* exception) {
    __tsan_release(exception);
    __tsan_acquire(exception);
}

/// A pointer to an exception has one member, its address.
void* addressIn(const std::exception_ptr* pointer) {
    return *reinterpret_cast<void* const*>(pointer);
}

} // namespace

void endCatchInLibrary() asm("__real___cxa_end_catch");
void releaseInLibrary(std::exception_ptr* pointer) asm("__real__ZNSt15__exception_ptr13exception_ptr10_M_releaseEv");

void endCatch() asm("__wrap___cxa_end_catch");
void endCatch() {
    {
        const std::exception_ptr caught = std::current_exception();
        if (caught) {
            countDown(addressIn(&caught));
        }
    }
    endCatchInLibrary();
}

void release(std::exception_ptr* pointer) asm("__wrap__ZNSt15__exception_ptr13exception_ptr10_M_releaseEv");
void release(std::exception_ptr* pointer) {
    countDown(addressIn(pointer));
    releaseInLibrary(pointer);
}
