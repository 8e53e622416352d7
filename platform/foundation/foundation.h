// All of foundation: values, exceptions, the log.
#pragma once

#include "platform/foundation/NSArray.h"
#include "platform/foundation/NSData.h"
#include "platform/foundation/NSDate.h"
#include "platform/foundation/NSDictionary.h"
#include "platform/foundation/NSException.h"
#include "platform/foundation/NSFormat.h"
#include "platform/foundation/NSLog.h"
#include "platform/foundation/NSNumber.h"
#include "platform/foundation/NSObject.h"
#include "platform/foundation/NSString.h"
#include "platform/foundation/NSURL.h"
