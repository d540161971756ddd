// The shadow map: depth only.
void main() {
}
