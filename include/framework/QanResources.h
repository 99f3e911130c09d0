// QanResources.h: the whole public interface of the library in one include.
#pragma once

#include <framework/QanCtlDependency.h>
#include <framework/QanString.h>
#include <framework/Resources.h>
#include <framework/StripMenuText.h>
#include <framework/TextParser.h>
