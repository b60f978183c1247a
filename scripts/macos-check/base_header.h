// SPDX-License-Identifier: MIT
// Comes before everything that is generated: names that the metadata takes for granted.
// clang-format off
#pragma once
#pragma clang system_header
#include <objc/objc.h>
#include <objc/NSObject.h>
#include <objc/runtime.h>
#include <stdint.h>
#include <stdbool.h>
#include <stdarg.h>
#include <sys/types.h>
#include <dispatch/dispatch.h>
#include <xpc/xpc.h>

struct __unknown;
typedef unsigned short unichar;
typedef double NSTimeInterval, CGFloat;

typedef struct CGImage *CGImageRef;
typedef struct CGColorSpace *CGColorSpaceRef;
typedef struct CGEvent *CGEventRef;
typedef struct CGContext *CGContextRef;
typedef struct CGLayer *CGLayerRef;
typedef struct CVPixelBuffer *CVPixelBufferRef;
typedef struct CMSampleBuffer *CMSampleBufferRef;
typedef struct CGPDFDocument *CGPDFDocumentRef;
typedef struct CGDataProvider *CGDataProviderRef;
typedef struct CGColor *CGColorRef;
typedef const struct CGPath *CGPathRef;
typedef const struct __CTFont *CTFontRef;

typedef const struct __CFString *CFStringRef;
typedef const struct __CFURL *CFURLRef;
typedef const struct __CFData *CFDataRef;
typedef const struct __CFArray *CFArrayRef;
typedef const struct __CFDictionary *CFDictionaryRef;
typedef const struct __CFNumber *CFNumberRef;
typedef const struct __CFBoolean *CFBooleanRef;
typedef const struct __CFRunLoopObserver *CFRunLoopObserverRef;
typedef const struct __CFUUID *CFUUIDRef;
typedef const struct __CFDate *CFDateRef;
typedef const struct __CFAllocator *CFAllocatorRef;
typedef const struct __CFSet *CFSetRef;
typedef const struct __CFLocale *CFLocaleRef;
typedef const struct __CFAttributedString *CFAttributedStringRef;
typedef const struct __CFPropertyList *CFPropertyListRef;
typedef const struct __CFMachPort *CFMachPortRef;
typedef struct __CFRunLoop *CFRunLoopRef;
typedef struct __CFRunLoopSource *CFRunLoopSourceRef;
typedef struct __CFRunLoopTimer *CFRunLoopTimerRef;
typedef struct __CFNotificationCenter *CFNotificationCenterRef;
typedef struct __CFBundle *CFBundleRef;
typedef struct __CFUserNotification *CFUserNotificationRef;
typedef struct __CFError *CFErrorRef;
typedef struct __CFString *CFMutableStringRef;
typedef struct __CFArray *CFMutableArrayRef;
typedef struct __CFDictionary *CFMutableDictionaryRef;
typedef struct __CFData *CFMutableDataRef;
typedef struct __FSEventStream *FSEventStreamRef;
typedef const void *CFTypeRef;
typedef long CFIndex;
typedef double CFTimeInterval, CFAbsoluteTime;
typedef unsigned char Boolean;
typedef unsigned char UInt8;
typedef unsigned short UInt16;
typedef unsigned int UInt32;
typedef int OSStatus, SInt32;
typedef UInt32 OSType, FourCharCode, CFStringEncoding;
typedef CFStringRef CFRunLoopMode;

// What C functions take and return when the metadata says no more than "a pointer".
struct AnyRef {
    const void *p;
    AnyRef(const void *q) : p(q) {}
    template <class T> AnyRef(T *q) : p(q) {}
    template <class T> operator T *() const { return (T *)p; }
};
