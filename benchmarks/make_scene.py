#!/usr/bin/env python3
"""make_scene.py COUNT: a glTF scene of COUNT nodes, always the same: a tree of eight children a node, with places,
names, meshes and materials in the proportions of a scene that people made."""

import json
import sys


def node(index, count, meshes):
    result = {"name": f"Node{index}", "translation": [index % 7 * 0.5, index % 11 * 0.25, index % 13 * 0.125]}
    if index % 4 == 0:
        result["rotation"] = [0, 0.7071067811865476, 0, 0.7071067811865476]
    if index % 8 == 1:
        result["scale"] = [1 + index % 3, 1, 1]
    children = list(range(index * 8 + 1, min(index * 8 + 9, count)))
    if children:
        result["children"] = children
    else:
        result["mesh"] = index % meshes
    return result


def main(count):
    meshes = max(1, count // 100)
    materials = max(1, count // 500)
    scene = {
        "asset": {"version": "2.0"},
        "scene": 0,
        "scenes": [{"name": "Scene", "nodes": [0]}],
        "nodes": [node(index, count, meshes) for index in range(count)],
        "meshes": [
            {"name": f"Mesh{i}", "primitives": [{"attributes": {"POSITION": 0}, "material": i % materials}]}
            for i in range(meshes)
        ],
        "materials": [
            {"name": f"Material{i}", "pbrMetallicRoughness": {"roughnessFactor": i % 10 / 10}} for i in range(materials)
        ],
        "accessors": [
            {"componentType": 5126, "count": 3, "type": "VEC3", "min": [0, 0, 0], "max": [1, 1, 1], "bufferView": 0}
        ],
        "bufferViews": [{"buffer": 0, "byteLength": 36}],
        "buffers": [{"byteLength": 36, "uri": "data:application/octet-stream;base64," + "A" * 48}],
    }
    json.dump(scene, sys.stdout, separators=(",", ":"))


if __name__ == "__main__":
    main(int(sys.argv[1]))
