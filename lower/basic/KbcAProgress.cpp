#include "KbcAProgress.h"

KbcAProgress::~KbcAProgress() = default;
