#pragma once

// The whole public interface.

#include "lyrfilesdk/components/kbaselib/klib/karrayul.h"
#include "lyrfilesdk/components/kbaselib/klib/kassert.h"
#include "lyrfilesdk/components/kbaselib/klib/kcontainerallocators.h"
#include "lyrfilesdk/components/kbaselib/klib/kmap.h"
#include "lyrfilesdk/components/kbaselib/klib/kmemory.h"
#include "lyrfilesdk/components/kbaselib/klib/kpair.h"
#include "lyrfilesdk/components/kbaselib/klib/kscopedptr.h"
#include "lyrfilesdk/components/kbaselib/klib/kstring.h"
#include "lyrfilesdk/components/kbaselib/klib/kstringlist.h"
#include "lyrfilesdk/components/kbaselib/klib/ktime.h"
#include "lyrfilesdk/klyrplugins/klyrplug.h"
#include "lyrfilesdk/klyrplugins/klyrsymbol.h"
#include "lyrfilesdk/klyrplugins/klyrsystemunit.h"
#include "lyrfilesdk/klyrplugins/klyrtypes.h"
#include "lyrfilesdk/lyrcore/klyrconnectionpoint.h"
#include "lyrfilesdk/lyrcore/klyrpropertydef.h"
#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"
#include "lyrfilesdk/lyrcore/klyrpropertyitems.h"
#include "lyrfilesdk/lyrcore/klyrpropertypage.h"
#include "lyrfilesdk/lyrkit/lyrkit.h"
