// Everything that Orvane exports.
#pragma once

#include <orvane/CPUSupportInstruct.h>
#include <orvane/CriticalSection.h>
#include <orvane/Exceptions.h>
#include <orvane/MemoryManage.h>
#include <orvane/MemoryPackets.h>
#include <orvane/OVCountSection.h>
#include <orvane/OVEventSection.h>
#include <orvane/OVFCSPara.h>
#include <orvane/OVFCSWriteRead.h>
#include <orvane/OVFilterSection.h>
#include <orvane/OVMatrix.h>
#include <orvane/OVMemoryAligned.h>
#include <orvane/OVModelSection.h>
#include <orvane/OVNthElementSection.h>
#include <orvane/OVSegmentSection.h>
#include <orvane/OVSignalSection.h>
#include <orvane/OVSignalStatistics.h>
#include <orvane/OVStatisticsSignalSection.h>
#include <orvane/Platform.h>
#include <orvane/QuickFindIndex.h>
#include <orvane/SectionUtility.h>
#include <orvane/Sections.h>
#include <orvane/VectorToArray.h>
