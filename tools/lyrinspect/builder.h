#pragma once

// Makes the objects of a scene from its document: an instance of a prototype for everything that the document lists,
// what it states as overrides, and every index as a connection.
//
//   source                 destination               type
//   scene.nodes            node.parent               contains
//   node.children          node.parent               contains
//   mesh.primitives        primitive.mesh            contains
//   animation.channels     channel.animation         contains
//   mesh, camera, ...      the property that states  reference
//                          its index
//   channel.value          the animated property     data

#include "tools/lyrinspect/buffers.h"
#include "tools/lyrinspect/document.h"
#include "tools/lyrinspect/objectreader.h"
#include "tools/lyrinspect/progress.h"
#include "tools/lyrinspect/scene.h"
#include "tools/lyrinspect/warnings.h"

namespace lyrsdk::inspect {

struct BuildInput {
    // Is taken apart: what an object of a list was read from is given back with it, so that the document and the pages
    // are never in memory as a whole together.
    Json& document;
    const Buffers& buffers;
    // The folder of the scene file, where images are looked for.
    std::string folder;
    // The separator of paths, for warnings about names that hold it.
    char separator;
};

class Builder {
public:
    // pScene is empty.
    Builder(const BuildInput& pInput, Scene& pScene, Warnings& pWarnings, Progress& pProgress);

    void Build();

private:
    void AddDocument();
    void AddObjects();
    void AddList(ObjectKind pKind, Json* pOwner, const char* pName, const std::vector<const char*>& pSkipped);
    void AddOne(ObjectKind pKind, const Json& pJson, int pIndex, const std::vector<const char*>& pSkipped);
    void AddPrimitives(SceneObject& pMesh, const Json& pJson);
    void AddChannels(SceneObject& pAnimation, const Json& pJson);
    void AddChannel(SceneObject& pAnimation, const Json& pJson, int pIndex, const Json& pSamplers);
    Json* OwnerOfLights() const;

    void ConnectReferences();
    void ConnectNodes(const std::vector<Reference>& pChildren, const std::vector<Reference>& pRoots);
    void ConnectContained(const SceneObject& pOwner, const char* pList, const SceneObject& pPart, const char* pBack);
    void ConnectAnimated(const SceneObject& pChannel);

    // What is computed from more than the object's own members.
    void CompleteCamera(const SceneObject& pCamera);
    void CompleteLight(const SceneObject& pLight);
    void CompletePrimitive(const SceneObject& pPrimitive, const Json& pJson);
    void CompleteImage(const SceneObject& pImage, const Json& pJson);
    void CompleteSkin(const SceneObject& pSkin, const Json& pJson);
    void CompleteChannel(const SceneObject& pChannel, double& pStart, double& pEnd);
    void CompleteAnimation(const SceneObject& pAnimation, double pStart, double pEnd);
    void CheckAttributes(const SceneObject& pPrimitive, const Json& pAttributes, const std::string& pPath);
    void CheckRequiredExtensions();
    bool CheckAccessor(const SceneObject& pObject, const char* pPath, int pAccessor);
    void CheckNames();

    const BuildInput& mInput;
    Scene& mScene;
    Warnings& mWarnings;
    Progress& mProgress;
    ObjectReader mReader;
};

}  // namespace lyrsdk::inspect
