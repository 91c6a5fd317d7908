// SPDX-License-Identifier: MIT
// Names the plug-in function in a text, but exports another one.

extern "C" __attribute__((visibility("default"))) const char* SomethingElse() {
  return "FbxSceneRegisterReaders";
}
