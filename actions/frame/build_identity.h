// What distinguishes this build's declarations of actions from those of any other one: a hash of
// all headers that they are made of.
//
// The plug-in passes it to the library with its editors. Each of them has a copy of the actions'
// code, so that an editor of another build would read and write other bytes than the action has.
// Threads: any.
#pragma once

namespace kelvarin {

const char* buildIdentity();

}  // namespace kelvarin
