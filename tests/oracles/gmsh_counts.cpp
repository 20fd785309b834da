// Says what the mesh library makes of a file: solids, nodes, elements by kind, and groups with their elements. One
// line for each; for the tests that compare with programs that are not ours. Usage: gmsh_counts FILE

#include <gmsh.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  try {
    gmsh::initialize();
    gmsh::option::setNumber("General.Terminal", 0);
    gmsh::merge(argv[1]);
    // Shapes, where there are some: how many solids, their volume, and the box around them all.
    gmsh::vectorpair solids;
    gmsh::model::occ::getEntities(solids, 3);
    double volume = 0;
    for (const auto& [dimension, tag] : solids) {
      double mass = 0;
      gmsh::model::occ::getMass(dimension, tag, mass);
      volume += mass;
    }
    if (!solids.empty()) {
      double box[6];
      gmsh::model::getBoundingBox(-1, -1, box[0], box[1], box[2], box[3], box[4], box[5]);
      std::printf("solids %zu %.5g", solids.size(), volume);
      for (const double end : box) std::printf(" %.4g", end);
      std::printf("\n");
    }
    std::vector<std::size_t> nodes;
    std::vector<double> coordinates;
    std::vector<double> parameters;
    gmsh::model::mesh::getNodes(nodes, coordinates, parameters);
    double sum[3] = {0, 0, 0};
    for (std::size_t i = 0; i < coordinates.size(); ++i) sum[i % 3] += coordinates[i];
    std::printf("nodes %zu %.9g %.9g %.9g\n", nodes.size(), sum[0], sum[1], sum[2]);
    std::map<int, std::size_t> kinds;
    const auto count = [](int dimension, int tag, std::map<int, std::size_t>& into) {
      std::vector<int> types;
      std::vector<std::vector<std::size_t>> elements;
      std::vector<std::vector<std::size_t>> elementNodes;
      gmsh::model::mesh::getElements(types, elements, elementNodes, dimension, tag);
      for (std::size_t i = 0; i < types.size(); ++i) into[types[i]] += elements[i].size();
    };
    count(-1, -1, kinds);
    for (const auto& [kind, number] : kinds) std::printf("kind %d %zu\n", kind, number);
    gmsh::vectorpair groups;
    gmsh::model::getPhysicalGroups(groups);
    for (const auto& [dimension, tag] : groups) {
      std::string name;
      gmsh::model::getPhysicalName(dimension, tag, name);
      std::vector<int> entities;
      gmsh::model::getEntitiesForPhysicalGroup(dimension, tag, entities);
      std::map<int, std::size_t> own;
      for (const int entity : entities) count(dimension, entity, own);
      std::size_t all = 0;
      for (const auto& [kind, number] : own) all += number;
      std::printf("group %zu %s\n", all, name.c_str());
    }
    gmsh::finalize();
    return 0;
  } catch (const std::string& error) {
    std::fprintf(stderr, "%s\n", error.c_str());
  } catch (...) {
    std::fprintf(stderr, "the library failed\n");
  }
  return 1;
}
