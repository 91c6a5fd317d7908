/* SPDX-License-Identifier: MIT */
/* clang-format off */
/*
 * FBX-to-TS3D: converts a rigged, skinned character model into an actor package (.czp) for Tessaly 3D Studio.
 *
 * There are two interfaces. New hosts take converters, the functions with the prefix FbxToTs3d: paths in UTF-8,
 * models and packages in memory, progress, cancelling, errors as text, pictures converted by the library, several
 * threads at once. In C++ the classes of fbx_to_ts3d.hpp are made of them. The four functions ConvertFBXFile... at
 * the end of this file are for hosts that know them.
 *
 * Conventions of both
 *  1. Texts end with a zero byte and are only read during the call.
 *  2. Callbacks come on the caller's thread, during the call only; no exception may leave them. Converters may take a
 *     second thread for packing, which ends with the call.
 *  3. Results are codes of FbxToTs3dResult. No exception leaves a function.
 */
/* clang-format on */
#ifndef FBX_TO_TS3D_H
#define FBX_TO_TS3D_H

#include <stddef.h>
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

/** What the functions return. */
enum FbxToTs3dResult {
  FBX_TO_TS3D_OK = 0,              /**< the package was written, or changed */
  FBX_TO_TS3D_NO_FILE = 1,         /**< the path names no existing file; nothing was done */
  FBX_TO_TS3D_LOAD_FAILED = 2,     /**< the model could not be loaded, or asks for absurd amounts of memory */
  FBX_TO_TS3D_PACKAGE_FAILED = 3,  /**< the package could not be opened or finished, or the skeleton file or
                                        the document could not be added to it */
  FBX_TO_TS3D_SKELETON_FAILED = 4, /**< the skeleton file could not be written */
  FBX_TO_TS3D_NO_MESH = 5,         /**< the model has no mesh that could be added to the package */
  FBX_TO_TS3D_DOCUMENT_UNREADABLE = 6, /**< final settings: there is no document, or it lacks a section */
  FBX_TO_TS3D_DOCUMENT_UNWRITABLE = 7, /**< final settings: the document could not be opened for writing */
  FBX_TO_TS3D_UPDATE_FAILED = 8,       /**< final settings: the package could not be opened or extended */
  FBX_TO_TS3D_BUSY = -1,               /**< called out of a callback of the same converter, or a function
                                            ConvertFBXFile... out of a callback of one; nothing was done */
  FBX_TO_TS3D_INVALID_ARGUMENT = -2,   /**< an argument makes no sense; nothing was done */
  FBX_TO_TS3D_CANCELLED = -3,          /**< a callback asked for it; there is no new package */
  FBX_TO_TS3D_OUTPUT_FAILED = -4,      /**< the finished package could not be put into its place, or there
                                            is no temporary folder to be had */
  FBX_TO_TS3D_OUT_OF_MEMORY = -5       /**< there was not enough memory */
};

/* clang-format off */
/* ---- Converters -----------------------------------------------------------------------------------------------
 *
 *  - Converters are independent of each other: each may run in a thread of its own. Calls of one converter from
 *    several threads wait for each other.
 *  - Paths are UTF-8, with slashes or backslashes, relative to the current directory or absolute. They may hold
 *    any letters and be of any length. Other texts are the bytes that models have, mostly UTF-8.
 *  - Nothing is written beside the model but the package: work files live in a temporary folder. Standard input and
 *    output are not touched, plug-ins not loaded, the process never ended.
 *  - Structs begin with their size, which the host sets (`options.size = sizeof options`); everything else may be
 *    zero. Later versions add fields at the end.
 */

typedef struct FbxToTs3dConverter FbxToTs3dConverter;

/** Takes a piece of text. */
typedef void(FBX_TO_TS3D_CALL* FbxToTs3dLineCallback)(void* context, const char* line);
/** Takes how much of the run is done, from 0 to 1, never less than before. Not 0: the run ends as cancelled. */
typedef int32_t(FBX_TO_TS3D_CALL* FbxToTs3dProgressCallback)(void* context, double fraction);
/** Takes the next piece of the package. Not 0: the run ends as cancelled. */
typedef int32_t(FBX_TO_TS3D_CALL* FbxToTs3dWriteCallback)(void* context, const void* bytes, size_t count);

/** What a conversion may put right beyond the rules of the classic functions. */
enum FbxToTs3dRepair {
  FBX_TO_TS3D_RIGID_BONES = 1,     /**< bones lose their scale and keep their place in the world */
  FBX_TO_TS3D_BIND_FROM_SKIN = 2,  /**< the pose in which the skins were bound takes the place of the bind pose */
  FBX_TO_TS3D_OPEN_GROUPS = 4,     /**< nodes without a type do not hide the bones below them */
  FBX_TO_TS3D_JOIN_ROOTS = 8,      /**< several skeletons go below one new root bone */
  FBX_TO_TS3D_ATTACH_RIGID = 16,   /**< meshes without a skin keep their place and follow the bone they hang on */
  FBX_TO_TS3D_REPAIR_AS_NEEDED = 32 /**< those of the five that the model needs; the result tells which and why */
};

/** How models are converted. A struct of zeros but for its size asks for the usual. */
typedef struct FbxToTs3dOptions {
  uint32_t size;              /**< sizeof(FbxToTs3dOptions) */
  int32_t rotationX;          /**< degrees, x of the document's rotation */
  int32_t rotationY;          /**< degrees, y */
  int32_t actorType;          /**< 0: the model's path tells ("Actor (Male)", ...); 1 male, 2 female, 3 boy, 4 girl,
                                   5 teenager, 6 baby; -1: none */
  int32_t meshOptionMode;     /**< 0, 1 or 2: which meshes get their normals turned inward, see ConvertFBXFile3 */
  uint32_t repairs;           /**< FbxToTs3dRepair, added up */
  int32_t keepsPictures;      /**< not 0: only ".tga" files beside the model get into the package */
  int32_t longestPictureSide; /**< pixels; larger pictures are refused. 0: 8192 */
  int32_t packageLevel;       /**< how hard the package is packed: 1 to 9, -1 not at all, 0 as usual */
  uint32_t reserved;          /**< 0 */
  const char* boneRenames;    /**< "old=new|old=new", or null */
  const char* meshOptions;    /**< mesh names separated by "|", or null; "!name" draws that mesh from both sides */
  const char* exclusions;     /**< names of meshes and materials that are left out, separated by "|", or null */
  const char* pictureFolder;  /**< where the pictures of models from memory are looked for, or null */
  void* context;              /**< first argument of the callbacks */
  FbxToTs3dLineCallback onLine;         /**< status lines, see FbxToTs3dStatusCallback; or null */
  FbxToTs3dProgressCallback onProgress; /**< or null */
  FbxToTs3dWriteCallback onPackage;     /**< takes the package where no path is given for it; or null */
  int32_t mostInfluences; /**< bones that move a vertex at most: the strongest, whose weights are made to add up to 1.
                               0: all */
  uint32_t reserved2;     /**< 0 */
} FbxToTs3dOptions;

/** The artist's last choices for a package: all of them, as each call starts from the document as it was converted.
 *  Meshes and bones that are not named keep what they have there. */
typedef struct FbxToTs3dFinalSettings {
  uint32_t size;           /**< sizeof(FbxToTs3dFinalSettings) */
  float scalePercent;      /**< above 0: the document's scale is a hundredth of it; else 1 */
  int32_t rotationX;       /**< degrees */
  int32_t rotationY;       /**< degrees */
  const char* boneRenames; /**< "old=new|old=new", or null */
  const char* meshes;      /**< "mesh=friendly|mesh=friendly", or null; a friendly name that begins with "~" or the
                                grave accent makes a switch, present or absent first */
} FbxToTs3dFinalSettings;

/** Version of the library, as "1.2.3". */
FBX_TO_TS3D_API const char* FBX_TO_TS3D_CALL FbxToTs3dVersion(void);

/** A new converter with the usual options; null when there is no memory for one. */
FBX_TO_TS3D_API FbxToTs3dConverter* FBX_TO_TS3D_CALL FbxToTs3dCreate(void);

/** Frees a converter; null is ignored. @return 0, or FBX_TO_TS3D_BUSY out of one of its callbacks */
FBX_TO_TS3D_API int32_t FBX_TO_TS3D_CALL FbxToTs3dDestroy(FbxToTs3dConverter* converter);

/** Sets the options of all later calls, copying the texts; null: the usual. */
FBX_TO_TS3D_API int32_t FBX_TO_TS3D_CALL FbxToTs3dSetOptions(FbxToTs3dConverter* converter,
                                                             const FbxToTs3dOptions* options);

/** Converts the model `modelPath`. Its pictures are looked for beside it.
 *  @param packagePath  of the package; null: handed to `onPackage` or, without that, written beside the model
 *  @return 0 to 5 or below 0 */
FBX_TO_TS3D_API int32_t FBX_TO_TS3D_CALL FbxToTs3dConvert(FbxToTs3dConverter* converter, const char* modelPath,
                                                          const char* packagePath);

/** Converts the model whose file holds these bytes.
 *  @param modelName    what its file is called; names the document, and tells the actor type
 *  @param packagePath  null: handed to `onPackage`, which has to be set */
FBX_TO_TS3D_API int32_t FBX_TO_TS3D_CALL FbxToTs3dConvertMemory(FbxToTs3dConverter* converter,
                                                                const char* modelName, const void* bytes,
                                                                size_t byteCount, const char* packagePath);

/** Applies final settings to a package: its document is rewritten and added again. When there are renames, bones without
 *  weight that none of them names get the product's names, where it has one for them; also those that the document
 *  does not list, if it is of this converter's last conversion.
 *  @return 0, 6, 8 or below 0 */
FBX_TO_TS3D_API int32_t FBX_TO_TS3D_CALL FbxToTs3dFinish(FbxToTs3dConverter* converter, const char* packagePath,
                                                         const FbxToTs3dFinalSettings* settings);

/** Tells what is wrong with a model without converting it, as the JSON of FbxToTs3dResultJson.
 *  @return 0 when the model could be converted; 1, 2 or 5 as a conversion would give, or below 0 */
FBX_TO_TS3D_API int32_t FBX_TO_TS3D_CALL FbxToTs3dCheck(FbxToTs3dConverter* converter, const char* modelPath);
FBX_TO_TS3D_API int32_t FBX_TO_TS3D_CALL FbxToTs3dCheckMemory(FbxToTs3dConverter* converter, const char* modelName,
                                                              const void* bytes, size_t byteCount);

/** Why the last call failed, in a sentence; empty when it did not. Valid until the converter's next call, like the
 *  text of the next function. */
FBX_TO_TS3D_API const char* FBX_TO_TS3D_CALL FbxToTs3dErrorText(const FbxToTs3dConverter* converter);

/** What the last call came to, as JSON in UTF-8: totals, members and notices of a conversion, or the findings of a
 *  check. The host guide lists the fields. Empty when there is no memory for it. */
FBX_TO_TS3D_API const char* FBX_TO_TS3D_CALL FbxToTs3dResultJson(const FbxToTs3dConverter* converter);

/* ---- The functions for hosts that know them ---------------------------------------------------------------------
 *
 *  - Paths are in the system's code page and use the backslash as their separator on every system; on POSIX each
 *    backslash becomes a slash when a file is opened.
 *  - All calls share one job of the process. Those of several threads wait for each other; one out of a callback
 *    gives FBX_TO_TS3D_BUSY and touches nothing.
 *  - Why a model could not be loaded is on standard output.
 *  - Work files are written into the folder of the model; "skeleton.csf", the mesh and the material files are deleted
 *    by their bare names after they were packed, that is in the current directory: make the model's folder the current
 *    directory to leave only the package and its ".xfg" document behind.
 */

/** Receives one status line, without a line end. Lines that begin with ">>> " are errors, "***" + code + ":" + text
 *  is a coded warning ("-1" second root bone, "100" mirrored bone, "101" non-uniform scale, "102" local matrix in the
 *  bind pose). Lines of this library's own: ">>> Left out ..." for polygons with vertices that do not exist,
 *  ">>> Damaged: ..." for arrays that cannot be unpacked, ">>> Refused: ..." for a model that asks for too much,
 *  ">>> Failed to Complete CZP File" for a package that lost data and was deleted. */
typedef void(FBX_TO_TS3D_CALL* FbxToTs3dStatusCallback)(void* callbackContext, const char* text);

/** Asks the host for a texture that is not a ".tga" file. On entry `*converted` tells whether the ".tga" file of the
 *  same base name exists beside the model; the host may write that file and set the flag. A set flag makes the ".tga"
 *  file a member of the package. `imagePath` is the path as the model gives it. */
typedef void(FBX_TO_TS3D_CALL* FbxToTs3dTextureCallback)(void* callbackContext, const char* imagePath,
                                                         uint8_t* converted);

/** Converts `fbxPath` into a package of the same name whose last three characters are "czp", or, with `finishOnly` set,
 *  runs ConvertFBXFileFinish instead.
 *
 *  | # | argument          | meaning                                                                             |
 *  |---|-------------------|-------------------------------------------------------------------------------------|
 *  | 1 | `fbxPath`         | the model. "Actor (Male)", "(Female)", "(Boy)", "(Girl)", "(Teenager)", "(Baby)"    |
 *  |   |                   | in the path choose the actor type, in any letter case                               |
 *  | 2 | `scale`           | per cent; used with `finishOnly` only                                               |
 *  | 3 | `rotationY`       | degrees, y of the document's rotation                                               |
 *  | 4 | `rotationX`       | degrees, x of the document's rotation                                               |
 *  | 5 | `finishOnly`      | not 0 (low byte): final settings instead of a conversion                            |
 *  | 6 | `boneRenameList`  | "old=new|old=new", or null                                                          |
 *  | 7 | `vertexTotalOut`  | receives the control points of all converted meshes (0 after a failure), or null;   |
 *  |   |                   | left alone by codes 1 and 2 and below 0                                             |
 *  | 8 | `polygonTotalOut` | the same for triangles                                                              |
 *  | 9 | `callbackContext` | handed to both callbacks                                                            |
 *  |10 | `statusCallback`  | status lines, or null                                                               |
 *  |11 | `textureCallback` | texture conversion, or null                                                         |
 *  |12 | `meshOptionMode`  | 0, 1 or 2: which meshes get their normals turned inward. With an empty list: 1      |
 *  |   |                   | turns all. With a list: 2 turns the listed ones, 0 and 1 all others. "!name" lists  |
 *  |   |                   | none here, so pass 2 when there is nothing else in the list                         |
 *  |13 | `meshOptionList`  | mesh names separated by "|", or null; "!name" draws that mesh from both sides       |
 *
 *  @return 0 to 5, or FBX_TO_TS3D_BUSY; with `finishOnly` 0 or 6 to 8. */
/* clang-format on */
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

/* clang-format off */
/** Rewrites the document that a conversion left beside the package with the final settings, and adds it to the package
 *  again. Bone renames and the actor type refer to the last conversion of this process.
 *
 *  | # | argument          | meaning                                                                             |
 *  |---|-------------------|-------------------------------------------------------------------------------------|
 *  | 1 | `sourcePath`      | the model; its last three characters are replaced by "xfg" and "czp"                |
 *  | 2 | `scalePercent`    | above 0: the document's scale is a hundredth of it; else 1                          |
 *  | 3 | `rotationY`       | degrees                                                                             |
 *  | 4 | `rotationX`       | degrees                                                                             |
 *  | 5 | `boneRenameList`  | "old=new|old=new", or null                                                          |
 *  | 6 | `meshList`        | "mesh=friendly|mesh=friendly", or null; a friendly name that begins with "~" or the |
 *  |   |                   | grave accent makes a switch, present or absent first                                |
 *  | 7 | `callbackContext` | handed to the callback                                                              |
 *  | 8 | `statusCallback`  | status lines, or null                                                               |
 *
 *  @return 0, 6, 7 or 8, or FBX_TO_TS3D_BUSY. */
/* clang-format on */
FBX_TO_TS3D_API int32_t FBX_TO_TS3D_CALL ConvertFBXFileFinish(const char* sourcePath, float scalePercent,
                                                              int32_t rotationY, int32_t rotationX,
                                                              const char* boneRenameList,
                                                              const char* meshList, void* callbackContext,
                                                              FbxToTs3dStatusCallback statusCallback);

#ifdef __cplusplus
}
#endif

#endif
