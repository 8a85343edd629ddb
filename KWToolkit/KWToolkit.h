// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Everything: the chief header of each room.
#pragma once

#include <KWToolkit/appservices/KWActiveApplications.h>
#include <KWToolkit/appservices/KWByteUnits.h>
#include <KWToolkit/appservices/KWCrashLogFinder.h>
#include <KWToolkit/appservices/KWPathUtils.h>
#include <KWToolkit/appservices/KWStartUpUtils.h>
#include <KWToolkit/appservices/NSApplication+Relaunch.h>
#include <KWToolkit/appservices/NSDate+PastFuture.h>
#include <KWToolkit/appservices/NSError+DebugDescription.h>
#include <KWToolkit/appservices/NSMutableArray+Prefill.h>
#include <KWToolkit/appservices/NSString+UUID.h>
#include <KWToolkit/appservices/PFMoveApplication.h>
#include <KWToolkit/controls/NSBezierPath+RoundPath.h>
#include <KWToolkit/hotkeys/KWGlobalHotkeyManager.h>
#include <KWToolkit/hotkeys/KWHotkeyView.h>
#include <KWToolkit/imaging/KWFileThumbnail.h>
#include <KWToolkit/imaging/KWImageLoading.h>
#include <KWToolkit/imaging/KWScaledImage.h>
#include <KWToolkit/imaging/NSBitmapImageRep+AdjustGamma.h>
#include <KWToolkit/imaging/NSBitmapImageRep+Thumb.h>
#include <KWToolkit/imaging/NSColor+CGColor.h>
#include <KWToolkit/imaging/NSColor+RGB255.h>
#include <KWToolkit/imaging/NSImage+AdjustGamma.h>
#include <KWToolkit/imaging/NSImage+BestRepresentationForSize.h>
#include <KWToolkit/imaging/NSImage+Reflection.h>
#include <KWToolkit/imaging/NSImage+Thumb.h>
#include <KWToolkit/logging/GDASLLog.h>
#include <KWToolkit/logging/KWFileLogger.h>
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/Message.h>
#include <KWToolkit/platform/foundation/NSBundle.h>
#include <KWToolkit/platform/foundation/NSUserDefaults.h>
#include <KWToolkit/runtime/NSObject+BlocksAdditions.h>
#include <KWToolkit/runtime/NSObject+OBAssociatedObjects.h>
#include <KWToolkit/runtime/NSObject+Swizzle.h>
#include <KWToolkit/url/KWMailUtils.h>
#include <KWToolkit/url/KWUrlDelegate.h>
#include <KWToolkit/url/KWUrlDelegateHelper.h>
#include <KWToolkit/url/NSDictionary+GTMNSDictionaryURLArgumentsAdditions.h>
#include <KWToolkit/url/NSString+GTMNSStringURLArgumentsAdditions.h>
#include <KWToolkit/url/NSURL+Encode.h>
#include <KWToolkit/windows/layers/CALayer+Animations.h>
#include <KWToolkit/windows/layers/CALayer+Layout.h>
