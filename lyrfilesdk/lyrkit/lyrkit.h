#pragma once

// The kit: typed access to properties and what is built on it. All of it stands on the public interface of the layers
// below; a program that wants only those need not include it.

#include "lyrfilesdk/lyrkit/klyrboundproperty.h"
#include "lyrfilesdk/lyrkit/klyrconversionverdict.h"
#include "lyrfilesdk/lyrkit/klyrdump.h"
#include "lyrfilesdk/lyrkit/klyrdumptext.h"
#include "lyrfilesdk/lyrkit/klyrenumeration.h"
#include "lyrfilesdk/lyrkit/klyrexplain.h"
#include "lyrfilesdk/lyrkit/klyrlimits.h"
#include "lyrfilesdk/lyrkit/klyrlookupbracket.h"
#include "lyrfilesdk/lyrkit/klyroverrides.h"
#include "lyrfilesdk/lyrkit/klyrownedpage.h"
#include "lyrfilesdk/lyrkit/klyrpropertyranges.h"
#include "lyrfilesdk/lyrkit/klyrpushpreview.h"
#include "lyrfilesdk/lyrkit/klyrtypedaccess.h"
#include "lyrfilesdk/lyrkit/klyrtypedadd.h"
#include "lyrfilesdk/lyrkit/klyrtypename.h"
