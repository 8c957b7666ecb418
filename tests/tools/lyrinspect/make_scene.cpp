// Writes a large scene for measurements: make_scene NODES > scene.gltf
//
// The nodes form a tree of eight children each. All share ten meshes; every fourth has extras, every tenth a name that
// another has too.

#include <cstdio>
#include <cstdlib>

namespace {

void WriteNode(long pIndex, long pCount) {
    std::printf("%s{\"name\":\"node %ld\",\"translation\":[%ld,%ld.5,-1],\"mesh\":%ld", pIndex == 0 ? "" : ",\n",
                pIndex % 10 == 9 ? pIndex / 100 : pIndex, pIndex % 7, pIndex % 5, pIndex % 10);
    if (pIndex % 4 == 0)
        std::printf(",\"extras\":{\"number\":%ld,\"tags\":[\"a\",\"b\"],\"size\":{\"width\":%ld.25}}", pIndex,
                    pIndex % 100);
    const long lFirst = 8 * pIndex + 1;
    for (long i = lFirst; i < lFirst + 8 && i < pCount; ++i)
        std::printf("%s%ld", i == lFirst ? ",\"children\":[" : ",", i);
    std::printf(lFirst < pCount ? "]}" : "}");
}

}  // namespace

int main(int pCount, char** pArguments) {
    const long lNodes = pCount == 2 ? std::strtol(pArguments[1], nullptr, 10) : 0;
    if (lNodes < 1 || lNodes > 10000000) {
        std::fputs("usage: make_scene NODES (1 to 10000000)\n", stderr);
        return 2;
    }
    std::puts("{\"asset\":{\"version\":\"2.0\"},\"scene\":0,\"scenes\":[{\"nodes\":[0]}],\"nodes\":[");
    for (long i = 0; i < lNodes; ++i)
        WriteNode(i, lNodes);
    std::puts("],\"meshes\":[");
    for (int i = 0; i < 10; ++i)
        std::printf("%s{\"name\":\"mesh %d\",\"primitives\":[{\"attributes\":{}}]}", i == 0 ? "" : ",", i);
    std::puts("]}");
    return std::ferror(stdout) ? 1 : 0;
}
