#include "image/BaseTransformation.h"

BaseTransformation::~BaseTransformation() = default;

bool BaseTransformation::AllowsVectorProcessing() const { return true; }
