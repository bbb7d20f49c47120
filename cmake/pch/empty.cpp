// The source of the targets that only hold a precompiled header.
int main()
{
}
