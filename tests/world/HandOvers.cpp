// SPDX-License-Identifier: MIT
// Loaded before every program that a test of the tsan preset starts (tests/world/run-in-world).
//
// The system's Qt is not built with ThreadSanitizer, which therefore doesn't see that a queued
// signal, a posted event or a task for a thread pool hands over what was written before it, and
// would report each as a race. This file tells it: whatever one of our threads has done before it
// gives something to Qt, or before a function called by Qt returns to Qt, counts as done before
// every function of ours that another thread enters later. Two threads that touch something at the
// same time, without such a hand-over between them, are still reported.
//
// Programs without ThreadSanitizer, such as a window manager, are not affected.

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <dlfcn.h>
#include <link.h>
#include <sys/auxv.h>

// Null in a program without ThreadSanitizer.
extern "C" {
[[gnu::weak]] void __tsan_acquire(void *address);
[[gnu::weak]] void __tsan_release(void *address);
}

namespace
{

char handOver;
std::atomic<unsigned> handOverCount = 0;
thread_local unsigned seenCount = 0;

void give()
{
    if (!__tsan_release)
        return;
    __tsan_release(&handOver);
    handOverCount.fetch_add(1, std::memory_order_release);
}

void take()
{
    const unsigned count = handOverCount.load(std::memory_order_acquire);
    if (count == seenCount)
        return;
    seenCount = count;
    __tsan_acquire(&handOver);
}

/// The callers of the functions that a thread is in: the program itself, or a library.
class Callers
{
public:
    void push(bool ours)
    {
        if (m_depth < deepest)
            m_ours[m_depth] = ours;
        ++m_depth;
    }

    bool pop()
    {
        --m_depth;
        return m_depth >= deepest || m_ours[m_depth];
    }

private:
    static constexpr size_t deepest = 4096;

    std::array<bool, deepest> m_ours;
    size_t m_depth = 0;
};

thread_local Callers callers;

struct Range {
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
};

/// Where the program's own code is in memory.
Range findOwnCode()
{
    const auto *headers = reinterpret_cast<const ElfW(Phdr) *>(::getauxval(AT_PHDR));
    const auto count = ::getauxval(AT_PHNUM);
    std::uintptr_t base = 0;
    Range code;
    for (unsigned long i = 0; i < count; ++i) {
        if (headers[i].p_type == PT_PHDR)
            base = reinterpret_cast<std::uintptr_t>(headers) - headers[i].p_vaddr;
        else if (headers[i].p_type == PT_LOAD && (headers[i].p_flags & PF_X) != 0)
            code = {base + headers[i].p_vaddr, base + headers[i].p_vaddr + headers[i].p_memsz};
    }
    return code;
}

bool isOurs(const void *code)
{
    static const Range own = findOwnCode();
    const auto address = reinterpret_cast<std::uintptr_t>(code);
    return address >= own.begin && address < own.end;
}

template <typename Function>
Function *next(const char *symbol)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, symbol));
}

} // namespace

// The sanitizer's own hooks at the beginning and the end of each of our functions.
extern "C" void __tsan_func_entry(void *caller)
{
    static auto *const real = next<void(void *)>("__tsan_func_entry");
    callers.push(isOurs(caller));
    take();
    real(caller);
}

extern "C" void __tsan_func_exit()
{
    static auto *const real = next<void()>("__tsan_func_exit");
    if (!callers.pop())
        give();
    real();
}

// Qt's functions that hand over. No argument is examined, so all of them are declared as pointers.
#define VELMORA_HAND_OVER(symbol)                                                                  \
    extern "C" void *symbol(void *a, void *b, void *c, void *d)                                    \
    {                                                                                              \
        static auto *const real = next<void *(void *, void *, void *, void *)>(#symbol);           \
        give();                                                                                    \
        return real(a, b, c, d);                                                                   \
    }

// QMetaObject::activate, invokeMethodImpl
VELMORA_HAND_OVER(_ZN11QMetaObject8activateEP7QObjectPKS_iPPv)
VELMORA_HAND_OVER(
    _ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionTypeEPv)
// QCoreApplication::postEvent
VELMORA_HAND_OVER(_ZN16QCoreApplication9postEventEP7QObjectP6QEventi)
// QObject::deleteLater, moveToThread
VELMORA_HAND_OVER(_ZN7QObject11deleteLaterEv)
VELMORA_HAND_OVER(_ZN7QObject12moveToThreadEP7QThread)
// QThread::quit
VELMORA_HAND_OVER(_ZN7QThread4quitEv)
// QThreadPool::start
VELMORA_HAND_OVER(_ZN11QThreadPool5startEP9QRunnablei)
VELMORA_HAND_OVER(_ZN11QThreadPool5startESt8functionIFvvEEi)
// QFutureInterfaceBase::setContinuation, reportFinished, reportResultsReady
VELMORA_HAND_OVER(
    _ZN20QFutureInterfaceBase15setContinuationESt8functionIFvRKS_EEP27QFutureInterfaceBasePrivate)
VELMORA_HAND_OVER(_ZN20QFutureInterfaceBase14reportFinishedEv)
VELMORA_HAND_OVER(_ZN20QFutureInterfaceBase18reportResultsReadyEii)
