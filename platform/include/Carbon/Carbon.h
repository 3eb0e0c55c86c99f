// All of Carbon that this platform offers. Programs include this and
// <CoreFoundation/CoreFoundation.h>, nothing beside them.
#ifndef CARBON_CARBON_H
#define CARBON_CARBON_H

#include <CoreFoundation/CoreFoundation.h>

#include <Carbon/AEDataModel.h>
#include <Carbon/AEHelpers.h>
#include <Carbon/AEInteraction.h>
#include <Carbon/AEMach.h>
#include <Carbon/AEObjects.h>
#include <Carbon/AEPackObject.h>
#include <Carbon/AERegistry.h>
#include <Carbon/Aliases.h>
#include <Carbon/AppleEvents.h>
#include <Carbon/CarbonEvents.h>
#include <Carbon/CodeFragments.h>
#include <Carbon/DateTimeUtils.h>
#include <Carbon/Dialogs.h>
#include <Carbon/Endian.h>
#include <Carbon/Events.h>
#include <Carbon/Files.h>
#include <Carbon/Finder.h>
#include <Carbon/Folders.h>
#include <Carbon/Gestalt.h>
#include <Carbon/HITextUtils.h>
#include <Carbon/IntlResources.h>
#include <Carbon/LSInfo.h>
#include <Carbon/LowMem.h>
#include <Carbon/MacApplication.h>
#include <Carbon/MacErrors.h>
#include <Carbon/MacMemory.h>
#include <Carbon/MacTypes.h>
#include <Carbon/Notification.h>
#include <Carbon/NumberFormatting.h>
#include <Carbon/OSUtils.h>
#include <Carbon/Processes.h>
#include <Carbon/Quickdraw.h>
#include <Carbon/QuickdrawAPI.h>
#include <Carbon/Resources.h>
#include <Carbon/Script.h>
#include <Carbon/StringCompare.h>
#include <Carbon/TextCommon.h>
#include <Carbon/TextUtils.h>
#include <Carbon/Timer.h>
#include <Carbon/UTCUtils.h>
#include <Carbon/UnicodeUtilities.h>
#include <Carbon/fp.h>

#endif
