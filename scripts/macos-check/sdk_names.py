# SPDX-License-Identifier: MIT
"""Which parts of the SDK are made, and the names that the metadata takes for granted."""

# Those with classes, each after those that it needs; and those with C functions only.
FRAMEWORKS = """Foundation CoreData QuartzCore CoreImage UniformTypeIdentifiers AppKit CoreML
    Vision ServiceManagement""".split()
C_FRAMEWORKS = ("CoreFoundation CoreGraphics CoreServices ApplicationServices ImageIO CoreVideo "
                "CoreText IOKit Carbon").split()
# The frameworks with classes whose C functions are declared too.
FRAMEWORKS_WITH_FUNCTIONS = """Foundation AppKit Vision ServiceManagement
    UniformTypeIdentifiers""".split()
FRAMEWORKS_WITH_ENUMS = set(FRAMEWORKS) | set(
    """ImageIO CoreGraphics CoreText ApplicationServices CoreMedia AVFoundation CoreLocation CloudKit
    Metal CoreVideo Contacts BrowserEngineKit CoreFoundation Symbols Intents Security""".split())
USES_CORE_GRAPHICS = ("AppKit", "QuartzCore", "CoreImage", "Vision")

GENERIC_CLASSES = {
    "NSArray": 1, "NSMutableArray": 1, "NSSet": 1, "NSMutableSet": 1, "NSEnumerator": 1,
    "NSOrderedSet": 1, "NSMutableOrderedSet": 1, "NSHashTable": 1, "NSCountedSet": 1,
    "NSMeasurement": 1, "NSFetchRequest": 1, "NSDictionary": 2, "NSMutableDictionary": 2,
    "NSCache": 2, "NSMapTable": 2,
}
STRING_TYPES = """NSPasteboardType NSNotificationName NSErrorDomain NSURLResourceKey NSRunLoopMode
    NSErrorUserInfoKey NSFileAttributeKey VNImageOption NSAppearanceName NSStatusItemAutosaveName
    NSImageName NSPasteboardName NSBindingName NSKeyValueChangeKey NSAttributedStringKey
    VNRecognizedPointKey""".split()
STRUCT_TYPES = {
    "NSRange": "_NSRange", "CGPoint": "CGPoint", "CGSize": "CGSize", "CGRect": "CGRect",
    "NSPoint": "CGPoint", "NSSize": "CGSize", "NSRect": "CGRect", "NSEdgeInsets": "NSEdgeInsets",
}
# What libobjc's header declares in NSObject.
KNOWN_OF_NSOBJECT = set("""-isEqual: -hash -superclass -class -self -performSelector:
    -performSelector:withObject: -performSelector:withObject:withObject: -isProxy -isKindOfClass:
    -isMemberOfClass: -conformsToProtocol: -respondsToSelector: -retain -release -autorelease
    -retainCount -zone -description -debugDescription +load +initialize -init +new +allocWithZone:
    +alloc -dealloc -finalize -copy -mutableCopy +copyWithZone: +mutableCopyWithZone:
    +instancesRespondToSelector: +conformsToProtocol: -methodForSelector: +instanceMethodForSelector:
    -doesNotRecognizeSelector: -forwardingTargetForSelector: -forwardInvocation:
    -methodSignatureForSelector: +instanceMethodSignatureForSelector: -allowsWeakReference
    -retainWeakReference +isSubclassOfClass: +resolveClassMethod: +resolveInstanceMethod: +hash
    +superclass +class +description +debugDescription""".split())
TAKEN_NAMES = set("""NSRange CGPoint CGSize CGRect CGFloat NSPoint NSSize NSRect NSInteger NSUInteger
    unichar NSTimeInterval NSEdgeInsets NSStringEncoding NSModalResponse NSWindowLevel id nil BOOL
    YES NO SEL Class IMP NULL NSPasteboardType NSNotificationName""".split())
FOUNDATION_MAKERS = """\
static inline NSRect NSMakeRect(CGFloat x, CGFloat y, CGFloat w, CGFloat h) { return NSRect{{x, y}, {w, h}}; }
static inline NSSize NSMakeSize(CGFloat w, CGFloat h) { return NSSize{w, h}; }
static inline NSPoint NSMakePoint(CGFloat x, CGFloat y) { return NSPoint{x, y}; }
static inline NSRange NSMakeRange(NSUInteger l, NSUInteger n) { return NSRange{l, n}; }
"""


def generic_part(name):
    parameters = ["__covariant A", "__covariant B"][:GENERIC_CLASSES.get(name, 0)]
    return f"<{', '.join(parameters)}>" if parameters else ""
