// The pictures of the error dialog and of a refused expression's field, among the resources below
// ":/KelvarinMathParser".
//
// Threads: any; more than one call does no harm.
#pragma once

namespace kelvarin {

// A static library's resources are there only once somebody asks for them.
void loadErrorPictures();

}  // namespace kelvarin
