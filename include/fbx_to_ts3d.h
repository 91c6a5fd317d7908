/* SPDX-License-Identifier: MIT
 *
 * FBX-to-TS3D: converts a rigged, skinned character model into an actor package (.czp) for Tessaly 3D Studio.
 *
 * Conventions
 *  1. Every text and path is 8-bit, zero-terminated, and only read during the call. Paths use the backslash
 * as their separator on every system; on POSIX each backslash becomes a slash when a file is opened.
 *  2. Calls run on the caller's thread and share one process-wide job: never run two at the same time.
 *  3. Results are the codes of FbxToTs3dResult. No exception leaves a function.
 *  4. Callbacks are called during the call only, with `callbackContext` as their first argument.
 *  5. Work files are written into the folder of the model; "skeleton.csf", the mesh and the material files
 * are deleted by their bare names after they were packed, that is in the current directory: make the model's
 * folder the current directory to leave only the package and its ".xfg" document behind.
 */
#ifndef FBX_TO_TS3D_H
#define FBX_TO_TS3D_H

#include <stdint.h>

#if defined(_WIN32)
#define FBX_TO_TS3D_CALL __cdecl
#if defined(FBX_TO_TS3D_BUILD)
#define FBX_TO_TS3D_API __declspec(dllexport)
#else
#define FBX_TO_TS3D_API __declspec(dllimport)
#endif
#else
#define FBX_TO_TS3D_CALL
#define FBX_TO_TS3D_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/** What the exported functions return. */
enum FbxToTs3dResult {
  FBX_TO_TS3D_OK = 0,              /**< the package, or the updated document, was written */
  FBX_TO_TS3D_NO_FILE = 1,         /**< `fbxPath` names no existing file; nothing was done */
  FBX_TO_TS3D_LOAD_FAILED = 2,     /**< the scene could not be loaded; the reason is on standard output */
  FBX_TO_TS3D_PACKAGE_FAILED = 3,  /**< the package could not be opened or finished, or the skeleton file or
                                        the document could not be added to it */
  FBX_TO_TS3D_SKELETON_FAILED = 4, /**< the skeleton file could not be written */
  FBX_TO_TS3D_NO_MESH = 5,         /**< the model has no mesh that could be added to the package */
  FBX_TO_TS3D_DOCUMENT_UNREADABLE = 6, /**< final settings: the document could not be opened for reading */
  FBX_TO_TS3D_DOCUMENT_UNWRITABLE = 7, /**< final settings: the document could not be opened for writing */
  FBX_TO_TS3D_UPDATE_FAILED = 8        /**< final settings: the package could not be opened or extended */
};

/** Receives one status line, without a line end. Lines that begin with ">>> " are errors, "***" + code + ":"
 * + text is a coded warning ("-1" second root bone, "100" mirrored bone, "101" non-uniform scale, "102" local
 *  matrix in the bind pose). */
typedef void(FBX_TO_TS3D_CALL* FbxToTs3dStatusCallback)(void* callbackContext, const char* text);

/** Asks the host for a texture that is not a ".tga" file. On entry `*converted` tells whether the ".tga" file
 * of the same base name exists beside the model; the host may write that file and set the flag. A set flag
 * makes the
 *  ".tga" file a member of the package. `imagePath` is the path as the model gives it. */
typedef void(FBX_TO_TS3D_CALL* FbxToTs3dTextureCallback)(void* callbackContext, const char* imagePath,
                                                         uint8_t* converted);

/** Converts `fbxPath` into a package of the same name whose last three characters are "czp", or, with
 * `finishOnly` set, runs ConvertFBXFileFinish instead.
 *
 *  | # | argument          | meaning |
 *  |---|-------------------|------------------------------------------------------------------------------------|
 *  | 1 | `fbxPath`         | the model. "Actor (Male)", "(Female)", "(Boy)", "(Girl)", "(Teenager)", "(Baby)"
 * | |   |                   | in the path choose the actor type, in any letter case | | 2 | `scale` | per
 * cent; used with `finishOnly` only                                              | | 3 | `rotationY`       |
 * degrees, y of the document's rotation                                              | | 4 | `rotationX` |
 * degrees, x of the document's rotation                                              | | 5 | `finishOnly` |
 * not 0 (low byte): final settings instead of a conversion                           | | 6 | `boneRenameList`
 * | "old=new|old=new", or null                                                         | | 7 |
 * `vertexTotalOut`  | receives the control points of all converted meshes (0 after a failure), or null;  | |
 * |                   | left alone by codes 1 and 2                                                        |
 *  | 8 | `polygonTotalOut` | the same for triangles | | 9 | `callbackContext` | handed to both callbacks |
 *  |10 | `statusCallback`  | status lines, or null | |11 | `textureCallback` | texture conversion, or null |
 *  |12 | `meshOptionMode`  | 0, 1 or 2: which meshes get their normals turned inward. With an empty list: 1 |
 *  |   |                   | turns all. With a list: 2 turns the listed ones, 0 and 1 all others | |13 |
 * `meshOptionList`  | mesh names separated by "|", or null; "!name" draws that mesh from both sides      |
 *
 *  @return 0 to 5; with `finishOnly` 0 or 6 to 8. */
FBX_TO_TS3D_API int32_t FBX_TO_TS3D_CALL ConvertFBXFile3(const char* fbxPath, float scale, int32_t rotationY,
                                                         int32_t rotationX, int32_t finishOnly,
                                                         const char* boneRenameList, int32_t* vertexTotalOut,
                                                         int32_t* polygonTotalOut, void* callbackContext,
                                                         FbxToTs3dStatusCallback statusCallback,
                                                         FbxToTs3dTextureCallback textureCallback,
                                                         int32_t meshOptionMode, const char* meshOptionList);

/** ConvertFBXFile3 without a mesh option list. */
FBX_TO_TS3D_API int32_t FBX_TO_TS3D_CALL ConvertFBXFile2(
    const char* fbxPath, float scale, int32_t rotationY, int32_t rotationX, int32_t finishOnly,
    const char* boneRenameList, int32_t* vertexTotalOut, int32_t* polygonTotalOut, void* callbackContext,
    FbxToTs3dStatusCallback statusCallback, FbxToTs3dTextureCallback textureCallback, int32_t meshOptionMode);

/** ConvertFBXFile3 without mesh options. */
FBX_TO_TS3D_API int32_t FBX_TO_TS3D_CALL ConvertFBXFile(const char* fbxPath, float scale, int32_t rotationY,
                                                        int32_t rotationX, int32_t finishOnly,
                                                        const char* boneRenameList, int32_t* vertexTotalOut,
                                                        int32_t* polygonTotalOut, void* callbackContext,
                                                        FbxToTs3dStatusCallback statusCallback,
                                                        FbxToTs3dTextureCallback textureCallback);

/** Rewrites the document that a conversion left beside the package with the final settings, and adds it to
 * the package again. Bone renames and the actor type refer to the last conversion of this process.
 *
 *  | # | argument          | meaning |
 *  |---|-------------------|------------------------------------------------------------------------------------|
 *  | 1 | `sourcePath`      | the model; its last three characters are replaced by "xfg" and "czp" | | 2 |
 * `scalePercent`    | above 0: the document's scale is a hundredth of it; else 1                         | |
 * 3 | `rotationY`       | degrees | | 4 | `rotationX`       | degrees | | 5 | `boneRenameList`  |
 * "old=new|old=new", or null                                                         | | 6 | `meshList` |
 * "mesh=friendly|mesh=friendly", or null; a friendly name that begins with "~" or    | |   | | the grave
 * accent makes a switch, present or absent first                           | | 7 | `callbackContext` | handed
 * to the callback                                                             | | 8 | `statusCallback`  |
 * status lines, or null                                                              |
 *
 *  @return 0, 6, 7 or 8. */
FBX_TO_TS3D_API int32_t FBX_TO_TS3D_CALL ConvertFBXFileFinish(const char* sourcePath, float scalePercent,
                                                              int32_t rotationY, int32_t rotationX,
                                                              const char* boneRenameList,
                                                              const char* meshList, void* callbackContext,
                                                              FbxToTs3dStatusCallback statusCallback);

#ifdef __cplusplus
}
#endif

#endif
